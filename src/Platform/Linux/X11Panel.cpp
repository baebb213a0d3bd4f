#include "Platform/Linux/X11Panel.h"

#include "Platform/Linux/X11Server.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <xcb/shape.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

namespace kippo {

namespace {

// A window manager that raises its window whenever ours comes on top must not be fought: after so many raises in this
// span, wait a while before the next.
constexpr int raisesWithoutPause = 4;
constexpr std::chrono::milliseconds raiseSpan{1000};
constexpr std::chrono::milliseconds raisePause{2000};

/// Window managers put at most a frame and one window more around a client.
constexpr int framesAroundAClient = 2;

constexpr std::uint32_t maximumClients = 1024;

/// From 2.1 on raw events come although another program has grabbed the pointer.
constexpr std::uint16_t inputMajor = 2;
constexpr std::uint16_t inputMinor = 2;

using X11::ask;
using X11::Owned;

} // namespace

std::unique_ptr<X11Panel> X11Panel::connect() {
    int screen = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Panel>(new X11Panel(connection, screen));
}

X11Panel::X11Panel(xcb_connection_t* connection, int screen) : connection_(connection) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (int i = 0; i < screen && screens.rem > 1; ++i) {
        xcb_screen_next(&screens);
    }
    root_ = screens.data->root;
    clientList_ = atom("_NET_CLIENT_LIST_STACKING");
    activeWindow_ = atom("_NET_ACTIVE_WINDOW");
    compositor_ = atom(("_NET_WM_CM_S" + std::to_string(screen)).c_str());
    const std::string_view name = "XWAYLAND";
    const auto nested = ask(connection_, xcb_query_extension, xcb_query_extension_reply,
                            static_cast<std::uint16_t>(name.size()), name.data());
    seesOnlyOwnWindows_ = (nested && nested->present) || std::getenv("WAYLAND_DISPLAY");
    listen();
    readCompositor();
}

X11Panel::~X11Panel() { xcb_disconnect(connection_); }

xcb_atom_t X11Panel::atom(const char* name) const {
    const auto reply = ask(connection_, xcb_intern_atom, xcb_intern_atom_reply, false,
                           static_cast<std::uint16_t>(std::strlen(name)), name);
    return reply ? reply->atom : XCB_NONE;
}

void X11Panel::listen() {
    const std::uint32_t rootEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &rootEvents);
    const auto* fixes = xcb_get_extension_data(connection_, &xcb_xfixes_id);
    if (fixes && fixes->present) {
        ask(connection_, xcb_xfixes_query_version, xcb_xfixes_query_version_reply, XCB_XFIXES_MAJOR_VERSION,
            XCB_XFIXES_MINOR_VERSION);
        fixesEvent_ = static_cast<std::uint8_t>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
        xcb_xfixes_select_selection_input(connection_, root_, compositor_,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto* input = xcb_get_extension_data(connection_, &xcb_input_id);
    if (input && input->present) {
        ask(connection_, xcb_input_xi_query_version, xcb_input_xi_query_version_reply, inputMajor, inputMinor);
        inputOpcode_ = input->major_opcode;
    }
    xcb_flush(connection_);
}

void X11Panel::setWindow(xcb_window_t window) {
    window_ = window;
    const std::uint32_t events = XCB_EVENT_MASK_VISIBILITY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, window_, XCB_CW_EVENT_MASK, &events);
    applyShape();
}

// Shape

void X11Panel::setShape(std::vector<PixelRect> shape) {
    if (shape == shape_) {
        return;
    }
    shape_ = std::move(shape);
    applyShape();
}

void X11Panel::applyShape() {
    if (window_ == XCB_NONE) {
        return;
    }
    std::vector<xcb_rectangle_t> rects;
    rects.reserve(shape_.size());
    for (const PixelRect& rect : shape_) {
        rects.push_back({static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
                         static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height)});
    }
    const auto set = [&](xcb_shape_kind_t kind) {
        xcb_shape_rectangles(connection_, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                             static_cast<std::uint32_t>(rects.size()), rects.data());
    };
    set(XCB_SHAPE_SK_INPUT);
    if (isComposited_) {
        xcb_shape_mask(connection_, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0, XCB_NONE);
    } else {
        set(XCB_SHAPE_SK_BOUNDING);
    }
    xcb_flush(connection_);
}

void X11Panel::readCompositor() {
    const auto owner = ask(connection_, xcb_get_selection_owner, xcb_get_selection_owner_reply, compositor_);
    const bool composited = owner && owner->owner != XCB_NONE;
    if (composited != isComposited_) {
        isComposited_ = composited;
        applyShape();
    }
}

// Pointer

std::optional<X11Panel::PointerState> X11Panel::pointer() const {
    if (window_ == XCB_NONE || (seesOnlyOwnWindows_ && !isPointerOver_)) {
        return std::nullopt;
    }
    const auto reply = ask(connection_, xcb_query_pointer, xcb_query_pointer_reply, window_);
    if (!reply || !reply->same_screen) {
        return std::nullopt;
    }
    constexpr std::uint32_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return PointerState{reply->win_x, reply->win_y, (reply->mask & buttons) != 0};
}

void X11Panel::setFollowing(bool follows) {
    if (inputOpcode_ == 0) {
        return;
    }
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};
    if (follows) {
        request.mask = XCB_INPUT_XI_EVENT_MASK_RAW_MOTION | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
    }
    xcb_input_xi_select_events(connection_, root_, 1, &request.head);
    xcb_flush(connection_);
}

// Keyboard

void X11Panel::takeKeyboard() {
    if (hasKeyboard_ || window_ == XCB_NONE) {
        return;
    }
    if (const auto focus = ask(connection_, xcb_get_input_focus, xcb_get_input_focus_reply)) {
        keyboardBefore_ = focus->focus;
        keyboardBeforeReverts_ = focus->revert_to;
    }
    hasKeyboard_ = true;
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    xcb_flush(connection_);
}

void X11Panel::giveBackKeyboard() {
    if (!hasKeyboard_) {
        return;
    }
    hasKeyboard_ = false;
    // Whoever took the keyboard from us meanwhile keeps it.
    const auto focus = ask(connection_, xcb_get_input_focus, xcb_get_input_focus_reply);
    if (focus && focus->focus == window_) {
        xcb_set_input_focus(connection_, keyboardBeforeReverts_, keyboardBefore_, XCB_CURRENT_TIME);
        xcb_flush(connection_);
    }
}

// Events

int X11Panel::fileDescriptor() const { return xcb_get_file_descriptor(connection_); }

bool X11Panel::processEvents() {
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        handle(*event);
    }
    tell();
    return xcb_connection_has_error(connection_) == 0;
}

void X11Panel::processQueuedEvents() {
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_)}) {
        handle(*event);
    }
    tell();
}

void X11Panel::tell() {
    if (std::exchange(restacked_, false)) {
        checkStacking();
    }
    if (std::exchange(pressed_, false) && onPressed) {
        onPressed();
    }
    if (std::exchange(moved_, false) && onMoved) {
        onMoved();
    }
}

void X11Panel::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7F;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        restacked_ = restacked_ || change.atom == clientList_ || change.atom == activeWindow_;
    } else if (type == XCB_VISIBILITY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_visibility_notify_event_t&>(event);
        restacked_ = restacked_ || change.state != XCB_VISIBILITY_UNOBSCURED;
    } else if (type == XCB_MAP_NOTIFY) {
        restacked_ = true;
    } else if (fixesEvent_ != 0 && type == fixesEvent_) {
        readCompositor();
    } else if (type == XCB_GE_GENERIC) {
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        if (generic.extension == inputOpcode_) {
            pressed_ = pressed_ || generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS;
            moved_ = moved_ || generic.event_type == XCB_INPUT_RAW_MOTION;
        }
    }
}

// Staying on top

void X11Panel::checkStacking() {
    if (window_ == XCB_NONE || !isManagedWindowAbove()) {
        return;
    }
    const auto now = Clock::now();
    if (now - raisesSince_ > raiseSpan) {
        raisesSince_ = now;
        raises_ = 0;
    }
    if (++raises_ > raisesWithoutPause) {
        if (onCheckLater) {
            onCheckLater(raisePause);
        }
        return;
    }
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(connection_);
}

/// Menus, tool tips and screen lockers are nobody's clients; they belong above.
bool X11Panel::isManagedWindowAbove() const {
    const auto tree = ask(connection_, xcb_query_tree, xcb_query_tree_reply, root_);
    if (!tree) {
        return false;
    }
    const xcb_window_t* bottom = xcb_query_tree_children(tree.get());
    const xcb_window_t* top = bottom + xcb_query_tree_children_length(tree.get());
    const xcb_window_t* ours = std::find(bottom, top, window_);
    if (ours == top || ours + 1 == top) {
        return false;
    }
    const std::vector<xcb_window_t> listed = clients();
    return std::any_of(ours + 1, top, [&](xcb_window_t window) {
        const auto attributes = ask(connection_, xcb_get_window_attributes, xcb_get_window_attributes_reply, window);
        return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
               holdsClient(window, listed, framesAroundAClient);
    });
}

bool X11Panel::holdsClient(xcb_window_t window, const std::vector<xcb_window_t>& listed, int depth) const {
    if (std::ranges::find(listed, window) != listed.end()) {
        return true;
    }
    if (depth == 0) {
        return false;
    }
    const auto tree = ask(connection_, xcb_query_tree, xcb_query_tree_reply, window);
    if (!tree) {
        return false;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    return std::any_of(children, children + xcb_query_tree_children_length(tree.get()),
                       [&](xcb_window_t child) { return holdsClient(child, listed, depth - 1); });
}

std::vector<xcb_window_t> X11Panel::clients() const {
    const auto reply = ask(connection_, xcb_get_property, xcb_get_property_reply, false, root_, clientList_,
                           XCB_ATOM_WINDOW, 0, maximumClients);
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(xcb_window_t))};
}

} // namespace kippo
