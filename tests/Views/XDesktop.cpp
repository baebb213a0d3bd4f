#include "XDesktop.h"

#include "Platform/Linux/X11Server.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <xcb/shape.h>
#include <xcb/xtest.h>

namespace kippo {

namespace {

using namespace std::chrono_literals;

auto geometry(xcb_connection_t* connection, xcb_window_t window) {
    return X11::ask(connection, xcb_get_geometry, xcb_get_geometry_reply, window);
}

/// The number that an X server writes to `fd` when it is ready.
std::optional<int> displayNumber(int fd) {
    std::string text;
    pollfd waiting{fd, POLLIN, 0};
    for (char digit = 0; poll(&waiting, 1, 10000) == 1 && read(fd, &digit, 1) == 1; text += digit) {
        if (digit == '\n') {
            return std::atoi(text.c_str());
        }
    }
    return std::nullopt;
}

} // namespace

Child::Child(const std::vector<std::string>& command, const std::vector<std::string>& environment) {
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ != 0) {
        return;
    }
    // A test that is killed takes its programs along.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(1);
    }
    const int nothing = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(nothing, standard);
    }
    for (const std::string& variable : environment) {
        putenv(const_cast<char*>(variable.c_str()));
    }
    execvp(arguments[0], arguments.data());
    _exit(127);
}

void Child::end() {
    if (pid_ > 0) {
        kill(pid_, SIGTERM);
        if (!eventually([this] { return waitpid(pid_, nullptr, WNOHANG) != 0; })) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        pid_ = -1;
    }
}

bool eventually(const std::function<bool()>& holds) {
    return !throughout(8s, [&] { return !holds(); }) || holds();
}

bool throughout(std::chrono::milliseconds span, const std::function<bool()>& holds) {
    for (const auto end = std::chrono::steady_clock::now() + span; std::chrono::steady_clock::now() < end;) {
        if (!holds()) {
            return false;
        }
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

std::unique_ptr<XDesktop> XDesktop::start(int width, int height) {
    int ends[2];
    if (pipe(ends) != 0) {
        return nullptr;
    }
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    const std::string size = std::to_string(width) + "x" + std::to_string(height) + "x24";
    Child server({"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", size, "-nolisten", "tcp", "-noreset"},
                 {});
    ::close(ends[1]);
    const auto number = displayNumber(ends[0]);
    ::close(ends[0]);
    if (!number) {
        return nullptr;
    }
    return std::unique_ptr<XDesktop>(new XDesktop(*number, std::move(server)));
}

XDesktop::XDesktop(int number, Child server) : number_(number), server_(std::move(server)) {
    connection_ = xcb_connect(display().c_str(), nullptr);
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    movePointer(10, screen_->height_in_pixels - 10);
    windowManager_ = run({"openbox"});
}

XDesktop::~XDesktop() { xcb_disconnect(connection_); }

Child XDesktop::run(const std::vector<std::string>& command, std::vector<std::string> environment) const {
    environment.push_back("DISPLAY=" + display());
    environment.push_back("WAYLAND_DISPLAY=");
    return Child(command, environment);
}

xcb_atom_t XDesktop::atom(const std::string& name) const {
    return X11::ask(connection_, xcb_intern_atom, xcb_intern_atom_reply, std::uint8_t{false},
                    static_cast<std::uint16_t>(name.size()), name.c_str())
        ->atom;
}

bool XDesktop::isComposited() const {
    const auto owner =
        X11::ask(connection_, xcb_get_selection_owner, xcb_get_selection_owner_reply, atom("_NET_WM_CM_S0"));
    return owner && owner->owner != XCB_NONE;
}

std::vector<XDesktop::Window> XDesktop::windows() const {
    std::vector<Window> found;
    const auto tree = X11::ask(connection_, xcb_query_tree, xcb_query_tree_reply, screen_->root);
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes =
            X11::ask(connection_, xcb_get_window_attributes, xcb_get_window_attributes_reply, children[i]);
        const auto place = geometry(connection_, children[i]);
        if (attributes && place && attributes->map_state == XCB_MAP_STATE_VIEWABLE) {
            found.push_back({children[i], place->x, place->y, place->width, place->height});
        }
    }
    return found;
}

std::optional<XDesktop::Window> XDesktop::windowAtTop(int width) const {
    const auto all = windows();
    const auto found = std::ranges::find_if(all, [=](const auto& one) { return one.width == width && one.y == 0; });
    return found == all.end() ? std::nullopt : std::optional{*found};
}

xcb_window_t XDesktop::topLevelOf(xcb_window_t window) const {
    while (true) {
        const auto tree = X11::ask(connection_, xcb_query_tree, xcb_query_tree_reply, window);
        if (!tree || tree->parent == screen_->root || tree->parent == XCB_NONE) {
            return window;
        }
        window = tree->parent;
    }
}

std::vector<xcb_rectangle_t> XDesktop::region(xcb_window_t window, Region region) const {
    const auto kind =
        static_cast<xcb_shape_kind_t>(region == Region::input ? XCB_SHAPE_SK_INPUT : XCB_SHAPE_SK_BOUNDING);
    const auto reply = X11::ask(connection_, xcb_shape_get_rectangles, xcb_shape_get_rectangles_reply, window, kind);
    if (!reply) {
        return {};
    }
    const xcb_rectangle_t* first = xcb_shape_get_rectangles_rectangles(reply.get());
    return {first, first + xcb_shape_get_rectangles_rectangles_length(reply.get())};
}

std::pair<int, int> XDesktop::extent(xcb_window_t window, Region which) const {
    int left = 32767, right = 0, bottom = 0;
    for (const xcb_rectangle_t& rect : region(window, which)) {
        left = std::min<int>(left, rect.x);
        right = std::max(right, rect.x + rect.width);
        bottom = std::max(bottom, rect.y + rect.height);
    }
    return {std::max(0, right - left), bottom};
}

XDesktop::Picture XDesktop::picture() const {
    const auto place = geometry(connection_, screen_->root);
    const auto image =
        X11::ask(connection_, xcb_get_image, xcb_get_image_reply, std::uint8_t{XCB_IMAGE_FORMAT_Z_PIXMAP},
                 screen_->root, std::int16_t{0}, std::int16_t{0}, place->width, place->height, ~0U);
    Picture picture{place->width, {}};
    if (image) {
        picture.pixels.resize(static_cast<std::size_t>(place->width) * place->height);
        std::memcpy(picture.pixels.data(), xcb_get_image_data(image.get()), picture.pixels.size() * 4);
        for (std::uint32_t& pixel : picture.pixels) {
            pixel &= 0xFFFFFF;
        }
    }
    return picture;
}

void XDesktop::movePointer(int x, int y) const {
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, screen_->root,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    xcb_flush(connection_);
}

void XDesktop::click() const {
    constexpr std::uint8_t pressAndRelease[] = {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE};
    for (const std::uint8_t type : pressAndRelease) {
        xcb_test_fake_input(connection_, type, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    }
    xcb_flush(connection_);
}

xcb_window_t XDesktop::focus() const {
    return X11::ask(connection_, xcb_get_input_focus, xcb_get_input_focus_reply)->focus;
}

void XDesktop::raise(xcb_window_t window) const {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(connection_);
}

xcb_window_t XDesktop::openFullScreen() {
    const xcb_window_t window = xcb_generate_id(connection_);
    const std::uint32_t values[] = {screen_->white_pixel, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
                      values);
    const xcb_atom_t fullScreen = atom("_NET_WM_STATE_FULLSCREEN");
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1,
                        &fullScreen);
    eventually([&] {
        xcb_map_window(connection_, window); // a window manager that is just starting forgets what it was asked
        const auto place = geometry(connection_, window);
        return place && place->width == screen_->width_in_pixels;
    });
    // The window manager may give it the focus, or think that nobody asked for it.
    eventually([&] {
        xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        return focus() == window;
    });
    return window;
}

void XDesktop::close(xcb_window_t window) const {
    xcb_destroy_window(connection_, window);
    xcb_flush(connection_);
}

int XDesktop::presses() {
    // A round trip, so that every event which the server has sent is here.
    focus();
    while (const auto event = X11::Owned<xcb_generic_event_t>{xcb_poll_for_event(connection_)}) {
        presses_ += (event->response_type & 0x7F) == XCB_BUTTON_PRESS ? 1 : 0;
    }
    return presses_;
}

} // namespace kippo
