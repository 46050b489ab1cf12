#include "linux/media/ArtworkDownload.h"

#include "linux/media/PublicAddress.h"

#include <QLibrary>

#include <curl/curl.h>
#include <memory>
#include <optional>
#include <sys/socket.h>
#include <type_traits>
#include <utility>

namespace nimbarrow {

namespace {

/// The library comes with a score of others, which take more memory than the whole companion: it is loaded
/// with the first picture that is fetched.
struct Curl {
    decltype(&curl_easy_init) init;
    decltype(&curl_easy_setopt) setopt;
    decltype(&curl_easy_perform) perform;
    decltype(&curl_easy_getinfo) getinfo;
    decltype(&curl_easy_cleanup) cleanup;

    /// Null without the library.
    static const Curl* loaded()
    {
        static const auto curl = [] {
            QLibrary library(QStringLiteral("curl"), 4);
            Curl found {};
            const auto resolve = [&library](auto& function, const char* name) {
                function
                    = reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
                return function != nullptr;
            };
            const bool isWhole = resolve(found.init, "curl_easy_init")
                && resolve(found.setopt, "curl_easy_setopt") && resolve(found.perform, "curl_easy_perform")
                && resolve(found.getinfo, "curl_easy_getinfo") && resolve(found.cleanup, "curl_easy_cleanup");
            return isWhole ? std::optional(found) : std::nullopt;
        }();
        return curl ? &*curl : nullptr;
    }
};

constexpr long longest = 10'000; // ms
constexpr long mostRedirections = 3;

curl_socket_t openSocket(void* mayConnect, curlsocktype /*purpose*/, curl_sockaddr* address)
{
    if (!(*static_cast<const ArtworkDownload::MayConnect*>(mayConnect))(address->addr))
        return CURL_SOCKET_BAD;
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* received)
{
    auto& picture = *static_cast<QByteArray*>(received);
    const auto arrived = size * count;
    const auto more = static_cast<qsizetype>(arrived);
    // Less than what came: the transfer fails.
    if (picture.size() + more > ArtworkDownload::largest)
        return 0;
    picture.append(bytes, more);
    return arrived;
}

int progress(void* cancelled, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return static_cast<const std::atomic<bool>*>(cancelled)->load() ? 1 : 0;
}

} // namespace

ArtworkDownload::ArtworkDownload()
    : ArtworkDownload(
        [](const sockaddr& address) { return isPublicAddress(address) && !isInOwnNetwork(address); }, {})
{
}

ArtworkDownload::ArtworkDownload(MayConnect mayConnect, QByteArray authorities)
    : m_mayConnect(std::move(mayConnect))
    , m_authorities(std::move(authorities))
{
}

QByteArray ArtworkDownload::run(const QUrl& url, const std::atomic<bool>& cancelled) const
{
    const auto* const library = Curl::loaded();
    if (library == nullptr)
        return {};
    const std::unique_ptr<CURL, decltype(library->cleanup)> handle(library->init(), library->cleanup);
    auto* const curl = handle.get();
    if (curl == nullptr)
        return {};
    const auto address = url.toEncoded();
    QByteArray picture;
    bool accepted = true;
    const auto set = [&](CURLoption option, auto value) {
        accepted = accepted && library->setopt(curl, option, value) == CURLE_OK;
    };
    set(CURLOPT_URL, address.constData());
    set(CURLOPT_PROTOCOLS_STR, "https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, mostRedirections);
    // What is connected to is what was checked: a proxy would resolve the name again, where nobody looks.
    set(CURLOPT_PROXY, "");
    set(CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    set(CURLOPT_OPENSOCKETDATA, &m_mayConnect);
    // No cookies, no .netrc, no authentication unless asked for; what an address itself says is asking.
    set(CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    // Some servers give nothing to whom they do not know; this is what everybody says.
    set(CURLOPT_USERAGENT, "Mozilla/5.0");
    set(CURLOPT_FAILONERROR, 1L);
    set(CURLOPT_TIMEOUT_MS, longest);
    set(CURLOPT_MAXFILESIZE, static_cast<long>(largest));
    set(CURLOPT_WRITEFUNCTION, &receive);
    set(CURLOPT_WRITEDATA, &picture);
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &progress);
    set(CURLOPT_XFERINFODATA, &cancelled);
    set(CURLOPT_NOSIGNAL, 1L);
    // A resolver that hangs holds nobody.
    set(CURLOPT_QUICK_EXIT, 1L);
    if (!m_authorities.isEmpty())
        set(CURLOPT_CAINFO, m_authorities.constData());
    // Without one of these the promise would not hold.
    if (!accepted || library->perform(curl) != CURLE_OK)
        return {};
    long status = 0;
    library->getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    return status == 200 ? picture : QByteArray();
}

} // namespace nimbarrow
