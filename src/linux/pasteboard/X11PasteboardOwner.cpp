#include "linux/pasteboard/X11PasteboardOwner.h"

#include <algorithm>
#include <vector>

namespace nimbarrow {

X11PasteboardOwner::X11PasteboardOwner(X11PasteboardConnection& connection, xcb_atom_t selection)
    : m_connection(connection)
    , m_selection(selection)
    , m_window(connection.makeWindow())
{
    // A paste may follow a write at once, so the claim must not wait for the server to make up atoms.
    for (const auto* name :
        { "TARGETS", "TIMESTAMP", "MULTIPLE", "INCR", "TEXT", "UTF8_STRING", "STRING", "CLIPBOARD_MANAGER",
            "SAVE_TARGETS", "text/plain", "text/plain;charset=utf-8", "text/uri-list", "image/png",
            "x-special/gnome-copied-files", "x-special/mate-copied-files", "application/x-kde4-urilist" })
        (void)connection.atom(name);
}

void X11PasteboardOwner::claim(const QHash<QByteArray, QByteArray>& content)
{
    m_content.clear();
    for (auto entry = content.begin(); entry != content.end(); ++entry)
        add(entry.key(), entry.value());
    xcb_set_selection_owner(m_connection.get(), m_window, m_selection, XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
}

void X11PasteboardOwner::add(const QByteArray& target, const QByteArray& bytes)
{
    m_content.insert(m_connection.atom(target), bytes);
}

void X11PasteboardOwner::save()
{
    auto* const xcb = m_connection.get();
    const auto manager = m_connection.atom("CLIPBOARD_MANAGER");
    const X11PasteboardConnection::Reply<xcb_get_selection_owner_reply_t> answer(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, manager), nullptr));
    if (m_content.isEmpty() || !answer || answer->owner == XCB_WINDOW_NONE)
        return;
    const std::vector<xcb_atom_t> targets(m_content.keyBegin(), m_content.keyEnd());
    const auto property = m_connection.atom("NIMBARROW_TARGETS");
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, m_window, property, XCB_ATOM_ATOM, 32,
        static_cast<uint32_t>(targets.size()), targets.data());
    xcb_convert_selection(xcb, m_window, manager, m_connection.atom("SAVE_TARGETS"), property, m_time);
    xcb_flush(xcb);
    m_saving = true;
}

void X11PasteboardOwner::handle(const xcb_generic_event_t& event)
{
    switch (event.response_type & 0x7f) {
    case XCB_SELECTION_REQUEST: {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.owner == m_window && request.selection == m_selection)
            answer(request);
        break;
    }
    case XCB_SELECTION_NOTIFY:
        // Whatever it says: it has done what it could.
        if (reinterpret_cast<const xcb_selection_notify_event_t&>(event).requestor == m_window)
            m_saving = false;
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.state != XCB_PROPERTY_DELETE)
            break;
        const auto delivery
            = std::find_if(m_deliveries.begin(), m_deliveries.end(), [&](const Delivery& one) {
                  return one.requestor == change.window && one.property == change.atom;
              });
        if (delivery != m_deliveries.end())
            sendNext(delivery);
        break;
    }
    case XCB_DESTROY_NOTIFY: {
        const auto gone = reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window;
        m_deliveries.remove_if([gone](const Delivery& one) { return one.requestor == gone; });
        break;
    }
    default: break;
    }
}

void X11PasteboardOwner::answer(const xcb_selection_request_event_t& request)
{
    // Programs of the oldest convention name no property and mean the target's own.
    const auto property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    bool given = false;
    if (request.target == m_connection.atom("MULTIPLE"))
        given = request.property != XCB_ATOM_NONE && convertMultiple(request.requestor, property);
    else
        given = convert(request.requestor, request.target, property);

    xcb_selection_notify_event_t reply {};
    reply.response_type = XCB_SELECTION_NOTIFY;
    reply.time = request.time;
    reply.requestor = request.requestor;
    reply.selection = request.selection;
    reply.target = request.target;
    if (given)
        reply.property = property;
    xcb_send_event(m_connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
        reinterpret_cast<const char*>(&reply));
}

bool X11PasteboardOwner::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    auto* const xcb = m_connection.get();
    // Who asks anew has given up waiting for the rest of the last answer, which must not run into this one.
    m_deliveries.remove_if([requestor, property](const Delivery& one) {
        return one.requestor == requestor && one.property == property;
    });
    if (target == m_connection.atom("TARGETS")) {
        std::vector<xcb_atom_t> targets { target, m_connection.atom("TIMESTAMP"),
            m_connection.atom("MULTIPLE") };
        targets.insert(targets.end(), m_content.keyBegin(), m_content.keyEnd());
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_ATOM, 32,
            static_cast<uint32_t>(targets.size()), targets.data());
        return true;
    }
    if (target == m_connection.atom("TIMESTAMP")) {
        xcb_change_property(
            xcb, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER, 32, 1, &m_time);
        return true;
    }
    const auto content = m_content.constFind(target);
    if (content == m_content.constEnd())
        return false;
    // TEXT means: in the encoding that the owner likes best.
    const auto type = target == m_connection.atom("TEXT") ? m_connection.atom("UTF8_STRING") : target;
    if (content->size() <= m_connection.chunkBytes()) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
            static_cast<uint32_t>(content->size()), content->constData());
        return true;
    }
    if (m_deliveries.size() >= mostDeliveries)
        drop(m_deliveries.begin());
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(xcb, requestor, XCB_CW_EVENT_MASK, &events);
    const auto total = static_cast<uint32_t>(content->size());
    xcb_change_property(
        xcb, XCB_PROP_MODE_REPLACE, requestor, property, m_connection.atom("INCR"), 32, 1, &total);
    m_deliveries.push_back({ requestor, property, type, *content, 0, Instant::clock::now() + deliveryStall });
    return true;
}

bool X11PasteboardOwner::convertMultiple(xcb_window_t requestor, xcb_atom_t property)
{
    const X11PasteboardConnection::Reply<xcb_get_property_reply_t> asked(
        xcb_get_property_reply(m_connection.get(),
            xcb_get_property(m_connection.get(), 0, requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 256),
            nullptr));
    if (!asked || asked->format != 32)
        return false;
    auto* const first = static_cast<xcb_atom_t*>(xcb_get_property_value(asked.get()));
    std::vector<xcb_atom_t> pairs(first, first + asked->value_len);
    const auto multiple = m_connection.atom("MULTIPLE");
    for (std::size_t at = 0; at + 1 < pairs.size(); at += 2) {
        // A request for several within one for several would go on for ever.
        if (pairs[at] == multiple || !convert(requestor, pairs[at], pairs[at + 1]))
            pairs[at + 1] = XCB_ATOM_NONE;
    }
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, requestor, property, asked->type, 32,
        static_cast<uint32_t>(pairs.size()), pairs.data());
    return true;
}

void X11PasteboardOwner::sendNext(Deliveries::iterator delivery)
{
    const auto size = std::min(m_connection.chunkBytes(), delivery->bytes.size() - delivery->sent);
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, delivery->requestor, delivery->property,
        delivery->target, 8, static_cast<uint32_t>(size), delivery->bytes.constData() + delivery->sent);
    delivery->sent += size;
    delivery->stallEnd = Instant::clock::now() + deliveryStall;
    // The empty piece is the end mark.
    if (size == 0)
        drop(delivery);
}

X11PasteboardOwner::Deliveries::iterator X11PasteboardOwner::drop(Deliveries::iterator delivery)
{
    const auto requestor = delivery->requestor;
    const auto next = m_deliveries.erase(delivery);
    const bool others = std::any_of(m_deliveries.begin(), m_deliveries.end(),
        [requestor](const Delivery& one) { return one.requestor == requestor; });
    if (!others) {
        const uint32_t none = XCB_EVENT_MASK_NO_EVENT;
        xcb_change_window_attributes(m_connection.get(), requestor, XCB_CW_EVENT_MASK, &none);
    }
    return next;
}

void X11PasteboardOwner::expire(Instant now)
{
    for (auto delivery = m_deliveries.begin(); delivery != m_deliveries.end();)
        delivery = now >= delivery->stallEnd ? drop(delivery) : std::next(delivery);
}

X11PasteboardOwner::Instant X11PasteboardOwner::deadline() const
{
    auto first = Instant::max();
    for (const auto& delivery : m_deliveries)
        first = std::min(first, delivery.stallEnd);
    return first;
}

} // namespace nimbarrow
