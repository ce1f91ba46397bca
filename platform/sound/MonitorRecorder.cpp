// SPDX-License-Identifier: MIT
#include "platform/sound/MonitorRecorder.h"

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/stream.h>
#include <pulse/subscribe.h>
#include <pulse/thread-mainloop.h>

#include <QMetaObject>
#include <QObject>
#include <algorithm>
#include <array>
#include <string>

#include "platform/sound/MonitorSource.h"

namespace platform {

namespace {

// The server converts to a rate of this or more, whatever the device has.
// Higher rates are not needed; lower ones hold too little to find beats in.
constexpr std::uint32_t kLowestRate = 8'000;
constexpr std::uint32_t kHighestRate = 48'000;
// Pieces of sound per second.
constexpr std::uint32_t kPiecesPerSecond = 40;

struct Unref {
    void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    void operator()(pa_context* context) const { pa_context_unref(context); }
    void operator()(pa_stream* stream) const { pa_stream_unref(stream); }
    void operator()(pa_operation* operation) const { pa_operation_unref(operation); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unref>;

// Releases the operation's handle; its callback is called all the same.
void dismiss(pa_operation* operation) {
    const Owned<pa_operation> dropped(operation);
}

}  // namespace

// Everything but the constructor and the destructor runs on the loop's thread,
// with the loop's lock held.
class MonitorRecorder::Link {
  public:
    Link(const MonitorRecorderOptions& options, Sound sound, std::function<void()> lost);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

  private:
    static Link& of(void* self) { return *static_cast<Link*>(self); }
    void start(const QByteArray& server);
    void tellLost();
    void contextChanged();
    void look();
    void found(const pa_source_info& source);
    void streamChanged();
    void close();
    void read();

    const Sound sound_;
    std::function<void()> lost_;  // called on the main thread
    QObject main_;                // receives the calls meant for the main thread
    Owned<pa_threaded_mainloop> loop_{pa_threaded_mainloop_new()};
    Owned<pa_context> context_;
    Owned<pa_stream> stream_;
    std::string source_;  // the source that the stream records
    double rate_ = 0;
    bool heard_ = false;  // the stream has given sound
};

MonitorRecorder::Link::Link(const MonitorRecorderOptions& options, Sound sound,
                            std::function<void()> lost)
    : sound_(std::move(sound)), lost_(std::move(lost)) {
    if (!loop_) {
        tellLost();
        return;
    }
    context_.reset(
        pa_context_new(pa_threaded_mainloop_get_api(loop_.get()), qUtf8Printable(options.name)));
    start(options.server.toUtf8());
}

void MonitorRecorder::Link::start(const QByteArray& server) {
    pa_context_set_state_callback(
        context_.get(), [](pa_context*, void* self) { of(self).contextChanged(); }, this);
    const int failed =
        pa_context_connect(context_.get(), server.isEmpty() ? nullptr : server.constData(),
                           PA_CONTEXT_NOAUTOSPAWN, nullptr);
    if (failed != 0 || pa_threaded_mainloop_start(loop_.get()) != 0) tellLost();
}

MonitorRecorder::Link::~Link() {
    if (!context_) return;
    pa_threaded_mainloop_lock(loop_.get());
    close();
    pa_context_set_state_callback(context_.get(), nullptr, nullptr);
    pa_context_set_subscribe_callback(context_.get(), nullptr, nullptr);
    // Disconnecting also ends operations that are still unanswered.
    pa_context_disconnect(context_.get());
    pa_threaded_mainloop_unlock(loop_.get());
    pa_threaded_mainloop_stop(loop_.get());
    context_.reset();
}

void MonitorRecorder::Link::tellLost() {
    QMetaObject::invokeMethod(
        &main_,
        [this] {
            if (const auto lost = std::exchange(lost_, {})) lost();
        },
        Qt::QueuedConnection);
}

void MonitorRecorder::Link::contextChanged() {
    const pa_context_state_t state = pa_context_get_state(context_.get());
    if (state == PA_CONTEXT_FAILED || state == PA_CONTEXT_TERMINATED) return tellLost();
    if (state != PA_CONTEXT_READY) return;
    // The subscription tells of new outputs, gone outputs and a new default.
    pa_context_set_subscribe_callback(
        context_.get(),
        [](pa_context*, pa_subscription_event_type_t event, std::uint32_t, void* self) {
            const int about = event & PA_SUBSCRIPTION_EVENT_FACILITY_MASK;
            const int what = event & PA_SUBSCRIPTION_EVENT_TYPE_MASK;
            // An output also reports a change at every change of its volume.
            if (about == PA_SUBSCRIPTION_EVENT_SERVER || what != PA_SUBSCRIPTION_EVENT_CHANGE)
                of(self).look();
        },
        this);
    constexpr auto kOf = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SERVER |
                                                             PA_SUBSCRIPTION_MASK_SINK);
    dismiss(pa_context_subscribe(context_.get(), kOf, nullptr, nullptr));
    look();
}

// Goes from the server to its default output, and from that output to its monitor.
void MonitorRecorder::Link::look() {
    const auto onSource = [](pa_context*, const pa_source_info* source, int, void* self) {
        if (source) of(self).found(*source);
    };
    static constexpr pa_source_info_cb_t kOnSource = onSource;
    const auto onSink = [](pa_context* context, const pa_sink_info* sink, int, void* self) {
        if (!sink) return;
        if (!sink->monitor_source_name) return of(self).close();
        dismiss(pa_context_get_source_info_by_name(context, sink->monitor_source_name, kOnSource,
                                                   self));
    };
    static constexpr pa_sink_info_cb_t kOnSink = onSink;
    const auto onServer = [](pa_context* context, const pa_server_info* server, void* self) {
        if (!server || !server->default_sink_name) return of(self).close();
        dismiss(
            pa_context_get_sink_info_by_name(context, server->default_sink_name, kOnSink, self));
    };
    dismiss(pa_context_get_server_info(context_.get(), onServer, this));
}

void MonitorRecorder::Link::found(const pa_source_info& source) {
    if (stream_ && source_ == source.name) return;
    close();
    if (!isMonitor(source)) return;
    source_ = source.name;
    heard_ = false;
    const std::uint32_t rate = std::clamp(source.sample_spec.rate, kLowestRate, kHighestRate);
    rate_ = rate;
    const pa_sample_spec wanted{.format = PA_SAMPLE_FLOAT32NE, .rate = rate, .channels = 1};
    stream_.reset(pa_stream_new(context_.get(), "Muziek", &wanted, nullptr));
    if (!stream_) return;
    pa_stream_set_state_callback(
        stream_.get(), [](pa_stream*, void* self) { of(self).streamChanged(); }, this);
    pa_stream_set_read_callback(
        stream_.get(), [](pa_stream*, std::size_t, void* self) { of(self).read(); }, this);
    constexpr auto kServers = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{
        .maxlength = kServers,
        .tlength = kServers,
        .prebuf = kServers,
        .minreq = kServers,
        .fragsize = rate / kPiecesPerSecond * static_cast<std::uint32_t>(sizeof(float))};
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_DONT_MOVE | PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_INHIBIT_AUTO_SUSPEND);
    if (pa_stream_connect_record(stream_.get(), source.name, &buffer, flags) != 0) close();
}

void MonitorRecorder::Link::streamChanged() {
    const pa_stream_state_t state = pa_stream_get_state(stream_.get());
    const bool ended = state == PA_STREAM_FAILED || state == PA_STREAM_TERMINATED;
    const bool other =
        state == PA_STREAM_READY && source_ != pa_stream_get_device_name(stream_.get());
    if (ended || other) close();
    // The mixer reports nothing else about a stream that it ended. A stream
    // that never gave sound would only end again.
    if (ended && std::exchange(heard_, false)) look();
}

void MonitorRecorder::Link::close() {
    if (!stream_) return;
    pa_stream_set_state_callback(stream_.get(), nullptr, nullptr);
    pa_stream_set_read_callback(stream_.get(), nullptr, nullptr);
    pa_stream_disconnect(stream_.get());
    stream_.reset();
    source_.clear();
}

void MonitorRecorder::Link::read() {
    while (pa_stream_readable_size(stream_.get()) > 0) {
        const void* data = nullptr;
        std::size_t bytes = 0;
        if (pa_stream_peek(stream_.get(), &data, &bytes) != 0 || bytes == 0) return;
        heard_ = true;
        std::size_t left = bytes / sizeof(float);
        if (data) {
            sound_({static_cast<const float*>(data), left}, rate_);
            left = 0;
        }
        // A gap becomes silence, so that times stay right.
        static constexpr std::array<float, 1024> kSilence{};
        for (; left > 0; left -= std::min(left, kSilence.size()))
            sound_(std::span(kSilence).first(std::min(left, kSilence.size())), rate_);
        pa_stream_drop(stream_.get());
    }
}

MonitorRecorder::MonitorRecorder(const MonitorRecorderOptions& options, Sound sound,
                                 std::function<void()> lost)
    : link_(std::make_unique<Link>(options, std::move(sound), std::move(lost))) {}

MonitorRecorder::~MonitorRecorder() = default;

}  // namespace platform
