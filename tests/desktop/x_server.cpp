#include "tests/desktop/x_server.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <span>
#include <stdexcept>

namespace lumbrine::desktop {

namespace {

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Answer<Reply> owned(Reply* reply) {
    return {reply, &std::free};
}

std::uint32_t rootOf(xcb_connection_t* connection) {
    if (::xcb_connection_has_error(connection) != 0) throw std::runtime_error("no X server answers");
    return ::xcb_setup_roots_iterator(::xcb_get_setup(connection)).data->root;
}

double brightness(std::span<const std::uint8_t> pixel) { // blue, green, red, nothing
    return (0.0722 * pixel[0] + 0.7152 * pixel[1] + 0.2126 * pixel[2]) / 255;
}

} // namespace

XServer::XServer(const std::string& display)
    : connection(::xcb_connect(display.c_str(), nullptr), &::xcb_disconnect), root(rootOf(connection.get())),
      utf8Name(atom("_NET_WM_NAME")), statusArea(atom("_NET_SYSTEM_TRAY_S0")) {}

XServer::~XServer() = default;

std::uint32_t XServer::atom(std::string_view name) const {
    const auto cookie = ::xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = owned(::xcb_intern_atom_reply(connection.get(), cookie, nullptr));
    return reply ? reply->atom : std::uint32_t{XCB_ATOM_NONE};
}

std::string XServer::property(std::uint32_t window, std::uint32_t name) const {
    const auto cookie = ::xcb_get_property(connection.get(), 0, window, name, XCB_ATOM_ANY, 0, 256);
    const auto reply = owned(::xcb_get_property_reply(connection.get(), cookie, nullptr));
    if (!reply) return {};
    return {static_cast<const char*>(::xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(::xcb_get_property_value_length(reply.get()))};
}

std::vector<Window> XServer::windowsOf(std::string_view program) const {
    std::vector<Window> found;
    collect(root, program, found);
    return found;
}

void XServer::collect(std::uint32_t parent, std::string_view program, std::vector<Window>& found) const {
    const auto tree =
        owned(::xcb_query_tree_reply(connection.get(), ::xcb_query_tree(connection.get(), parent), nullptr));
    if (!tree) return;
    for (const std::uint32_t window : std::span(::xcb_query_tree_children(tree.get()), tree->children_len)) {
        const auto cookie = ::xcb_get_window_attributes(connection.get(), window);
        const auto attributes = owned(::xcb_get_window_attributes_reply(connection.get(), cookie, nullptr));
        // The program's name, a zero, its class, a zero.
        const std::string name = property(window, XCB_ATOM_WM_CLASS);
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
            std::string_view(name).substr(0, name.find('\0')) == program) {
            const std::string title = property(window, utf8Name);
            found.push_back({window, title.empty() ? property(window, XCB_ATOM_WM_NAME) : title, placeOf(window)});
        }
        collect(window, program, found);
    }
}

Place XServer::placeOf(std::uint32_t window) const {
    const auto size =
        owned(::xcb_get_geometry_reply(connection.get(), ::xcb_get_geometry(connection.get(), window), nullptr));
    const auto cookie = ::xcb_translate_coordinates(connection.get(), window, root, 0, 0);
    const auto corner = owned(::xcb_translate_coordinates_reply(connection.get(), cookie, nullptr));
    if (!size || !corner) return {};
    return {corner->dst_x, corner->dst_y, size->width, size->height};
}

bool XServer::hasStatusArea() const {
    const auto cookie = ::xcb_get_selection_owner(connection.get(), statusArea);
    const auto owner = owned(::xcb_get_selection_owner_reply(connection.get(), cookie, nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

bool XServer::pointerIsTaken() const {
    // Asks for a grab as of a time long past. The server looks first whether another program has one, and then refuses
    // because of the time: the question changes nothing.
    constexpr std::uint32_t longAgo = 1;
    const auto cookie = ::xcb_grab_pointer(connection.get(), 0, root, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                                           XCB_NONE, XCB_NONE, longAgo);
    const auto reply = owned(::xcb_grab_pointer_reply(connection.get(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

double XServer::contrast(const Place& place) const {
    const auto cookie =
        ::xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(place.x),
                        static_cast<std::int16_t>(place.y), static_cast<std::uint16_t>(place.width),
                        static_cast<std::uint16_t>(place.height), ~0u);
    const auto image = owned(::xcb_get_image_reply(connection.get(), cookie, nullptr));
    if (!image) return 0;
    const std::span bytes(::xcb_get_image_data(image.get()),
                          static_cast<std::size_t>(::xcb_get_image_data_length(image.get())));
    double darkest = 1;
    double brightest = 0;
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
        const double value = brightness(bytes.subspan(at, 4));
        darkest = std::min(darkest, value);
        brightest = std::max(brightest, value);
    }
    return brightest - darkest;
}

bool XServer::focus(const Window& window) const {
    const auto cookie =
        ::xcb_set_input_focus_checked(connection.get(), XCB_INPUT_FOCUS_PARENT, window.id, XCB_CURRENT_TIME);
    return !owned(::xcb_request_check(connection.get(), cookie));
}

} // namespace lumbrine::desktop
