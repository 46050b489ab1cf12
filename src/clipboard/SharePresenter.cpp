#include "clipboard/SharePresenter.h"

#include "platform/Opener.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace nimbarrow {

namespace {

using Action = ShareChoice::Action;

bool isFile(const ShareItem& item)
{
    const auto* const url = std::get_if<QUrl>(&item);
    return url && url->isLocalFile();
}

} // namespace

SharePresenter::SharePresenter(SharePicker& picker, Opener& opener, QList<ShareItem> items,
    std::function<void()> onDone, QObject* parent)
    : QObject(parent)
    , m_picker(picker)
    , m_opener(opener)
    , m_items(std::move(items))
    , m_onDone(std::move(onDone))
{
    m_asks = !m_picker.present(m_items, [self = QPointer(this)] {
        if (self)
            self->close();
    });
    if (m_asks)
        offer();
}

void SharePresenter::offer()
{
    for (const auto service : m_picker.services(m_items)) {
        m_choices << ShareChoice::make(service == ShareService::Email ? Action::Email : Action::OpenWith);
    }
    if (!m_items.isEmpty() && std::ranges::all_of(m_items, isFile))
        m_choices << ShareChoice::make(Action::ShowInFolder);
    if (m_items.size() == 1 && std::holds_alternative<QUrl>(m_items.first()))
        m_choices << ShareChoice::make(Action::Open);
}

QVariantList SharePresenter::choices() const
{
    QVariantList choices;
    for (const auto& choice : m_choices)
        choices << QVariant::fromValue(choice);
    return choices;
}

void SharePresenter::choose(int index)
{
    if (!m_isOpen || index < 0 || index >= m_choices.size())
        return;
    perform(m_choices.at(index).action);
    close();
}

void SharePresenter::cancel()
{
    close();
}

void SharePresenter::perform(Action action)
{
    switch (action) {
    case Action::Email: m_picker.share(m_items, ShareService::Email); break;
    case Action::OpenWith: m_picker.share(m_items, ShareService::OpenWith); break;
    case Action::ShowInFolder: reveal(); break;
    case Action::Open: m_opener.open(std::get<QUrl>(m_items.first())); break;
    }
}

void SharePresenter::reveal()
{
    QList<QUrl> files;
    for (const auto& item : std::as_const(m_items))
        files << std::get<QUrl>(item);
    m_opener.reveal(files);
}

void SharePresenter::close()
{
    if (!std::exchange(m_isOpen, false))
        return;
    // It may drop this object.
    if (const auto onDone = std::exchange(m_onDone, {}))
        onDone();
}

} // namespace nimbarrow
