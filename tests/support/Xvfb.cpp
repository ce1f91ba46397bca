// SPDX-License-Identifier: MIT
#include "tests/support/Xvfb.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

constexpr int kStartMilliseconds = 10'000;

pid_t launch(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t process = fork();
    if (process != 0) return process;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

// Reads the display's number, which the server writes once ready.
QByteArray readNumber(int pipe) {
    QByteArray number;
    pollfd wait{.fd = pipe, .events = POLLIN, .revents = 0};
    char c = 0;
    while (poll(&wait, 1, kStartMilliseconds) == 1 && read(pipe, &c, 1) == 1 && c != '\n')
        number.append(c);
    return number;
}

}  // namespace

Xvfb::Xvfb(const std::string& screen, const std::vector<std::string>& more) {
    int ends[2];
    if (pipe(ends) != 0) return;
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    std::vector<std::string> words{"Xvfb",      "-displayfd", std::to_string(ends[1]),
                                   "-screen",   "0",          screen,
                                   "-nolisten", "tcp",        "-noreset"};
    words.insert(words.end(), more.begin(), more.end());
    process_ = launch(words);
    close(ends[1]);
    const QByteArray number = readNumber(ends[0]);
    close(ends[0]);
    if (number.isEmpty()) return;
    display_ = ":" + number;
    connection_ = xcb_connect(display_.constData(), nullptr);
    if (xcb_connection_has_error(connection_) == 0) return;
    xcb_disconnect(connection_);
    connection_ = nullptr;
}

Xvfb::~Xvfb() {
    if (connection_) xcb_disconnect(connection_);
    kill();
}

void Xvfb::kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

const xcb_screen_t& Xvfb::screen() const {
    return *xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
}

void Xvfb::sync() const {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

xcb_window_t Xvfb::makeWindow(const Host& options) const {
    const int depth = options.depth != 0 ? options.depth : screen().root_depth;
    xcb_visualid_t visual = screen().root_visual;
    if (depth != screen().root_depth) {
        for (auto d = xcb_screen_allowed_depths_iterator(&screen()); d.rem; xcb_depth_next(&d))
            if (d.data->depth == depth && xcb_depth_visuals_length(d.data) > 0)
                visual = xcb_depth_visuals(d.data)->visual_id;
    }
    const xcb_colormap_t colours = xcb_generate_id(connection_);
    xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, colours, screen().root, visual);
    const std::uint32_t values[] = {0xffffffff, 0, colours};
    const xcb_window_t window = xcb_generate_id(connection_);
    xcb_create_window(connection_, static_cast<std::uint8_t>(depth), window,
                      options.parent != 0 ? options.parent : screen().root,
                      static_cast<std::int16_t>(options.x), static_cast<std::int16_t>(options.y),
                      static_cast<std::uint16_t>(options.width),
                      static_cast<std::uint16_t>(options.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      visual, XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP, values);
    if (options.mapped) xcb_map_window(connection_, window);
    sync();
    return window;
}

void Xvfb::destroy(xcb_window_t window) const {
    xcb_destroy_window(connection_, window);
    sync();
}

void Xvfb::map(xcb_window_t window) const {
    xcb_map_window(connection_, window);
    sync();
}

void Xvfb::unmap(xcb_window_t window) const {
    xcb_unmap_window(connection_, window);
    sync();
}

void Xvfb::resize(xcb_window_t window, int width, int height) const {
    const std::uint32_t size[] = {static_cast<std::uint32_t>(width),
                                  static_cast<std::uint32_t>(height)};
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size);
    sync();
}

void Xvfb::clear(xcb_window_t window, const QRect& rect) const {
    xcb_clear_area(connection_, 1, window, static_cast<std::int16_t>(rect.x()),
                   static_cast<std::int16_t>(rect.y()), static_cast<std::uint16_t>(rect.width()),
                   static_cast<std::uint16_t>(rect.height()));
    sync();
}

void Xvfb::fill(xcb_window_t window, std::uint32_t pixel) const {
    const xcb_gcontext_t context = xcb_generate_id(connection_);
    xcb_create_gc(connection_, context, window, XCB_GC_FOREGROUND, &pixel);
    const xcb_rectangle_t all{0, 0, 0x7fff, 0x7fff};
    xcb_poly_fill_rectangle(connection_, window, context, 1, &all);
    xcb_free_gc(connection_, context);
    sync();
}

std::vector<std::uint32_t> Xvfb::pixels(xcb_window_t window, const QRect& rect) const {
    const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        connection_,
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                      static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                      static_cast<std::uint16_t>(rect.width()),
                      static_cast<std::uint16_t>(rect.height()), 0xffffffff),
        nullptr));
    std::vector<std::uint32_t> numbers;
    if (!image) return numbers;
    const xcb_setup_t* const setup = xcb_get_setup(connection_);
    const xcb_format_t* format = xcb_setup_pixmap_formats(setup);
    while (format->depth != image->depth)
        ++format;
    const int bits = format->bits_per_pixel;
    const int pad = format->scanline_pad;
    const int line = (rect.width() * bits + pad - 1) / pad * pad / 8;
    const bool least = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    const std::uint8_t* const data = xcb_get_image_data(image.get());
    for (int y = 0; y < rect.height(); ++y) {
        for (int x = 0; x < rect.width(); ++x) {
            const std::uint8_t* const at = data + y * line + x * bits / 8;
            std::uint32_t number = 0;
            for (int i = 0; i < bits / 8; ++i)
                number |= std::uint32_t{at[least ? i : bits / 8 - 1 - i]} << (8 * i);
            if (bits == 1) number = *at >> (x % 8) & 1;  // least significant bit first
            // Bits of a pixel beyond its depth are undefined.
            const int depth = image->depth;
            numbers.push_back(depth < 32 ? number & ((1U << depth) - 1U) : number);
        }
    }
    return numbers;
}

std::uint32_t Xvfb::pixel(xcb_window_t window, int x, int y) const {
    const auto one = pixels(window, {x, y, 1, 1});
    return one.empty() ? 0xdeadbeef : one.front();
}

QImage Xvfb::picture(xcb_window_t window) const {
    const Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    if (!size) return {};
    QImage image(size->width, size->height, QImage::Format_RGB32);
    const auto numbers = pixels(window, image.rect());
    if (numbers.empty()) return {};
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, numbers[static_cast<std::size_t>(y * image.width() + x)]);
    return image;
}

std::vector<xcb_window_t> Xvfb::mappedWindows() const {
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, screen().root), nullptr));
    std::vector<xcb_window_t> mapped;
    const xcb_window_t* const all = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const Reply<xcb_get_window_attributes_reply_t> look(xcb_get_window_attributes_reply(
            connection_, xcb_get_window_attributes(connection_, all[i]), nullptr));
        if (look && look->map_state == XCB_MAP_STATE_VIEWABLE &&
            look->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT)
            mapped.push_back(all[i]);
    }
    return mapped;
}
