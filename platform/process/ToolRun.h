// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A program to run and its arguments, without the program's own name. A value: any thread.
struct ToolCall {
    std::string program;  // a path; no search is done
    std::vector<std::string> arguments;
    std::size_t mostBytes = SIZE_MAX;  // of its output
    double mostSeconds = 0.0;          // until its end; 0: no limit
};

// The end of a run of a tool. A value.
enum class ToolEnd {
    done,        // with exit status 0 or 1
    failed,      // with another status, or by a signal
    notStarted,  // or without memory for its text
    stopped,     // as was requested
    late,        // it took more than mostSeconds
    tooMuch,     // it wrote more than mostBytes
};

// A tool's whole standard output. Move-only owner. Grows in place, so a large
// text is not copied while it comes in.
class ToolText {
  public:
    [[nodiscard]] std::string_view text() const { return {data_.get(), size_}; }

    // Makes room for at least `room` more bytes; null when memory runs out.
    [[nodiscard]] char* grow(std::size_t room);
    [[nodiscard]] std::size_t room() const { return capacity_ - size_; }
    void wrote(std::size_t bytes) { size_ += bytes; }

  private:
    struct Free {
        void operator()(char* data) const { std::free(data); }
    };
    std::unique_ptr<char, Free> data_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

// A request to give up, which cannot be taken back: ends the tool that runs under it, and
// every later one. Any thread. The caller owns the request, which outlives the runs.
class ToolStop {
  public:
    ToolStop();
    ~ToolStop();
    ToolStop(const ToolStop&) = delete;
    ToolStop& operator=(const ToolStop&) = delete;

    void request() const;  // also from a signal handler
    [[nodiscard]] int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

// Runs a tool, reads its standard output to the end and waits for its exit; the exit status is
// ignored. The tool's input is empty, its standard error is discarded, it inherits no other
// descriptor, its signals have their defaults, and this program goes before it where the
// processors are busy.
//
// Blocks the calling thread. Gives nothing when the tool could not be started, when
// `stop` was requested, when the tool took too long or wrote too much, or when the text
// does not fit into memory; the tool is then killed with its process group. The kernel
// also kills the tool when the calling thread ends first, for whatever reason. The way
// the run ended is left in `end`. Any thread.
[[nodiscard]] std::optional<ToolText> runTool(const ToolCall& call, const ToolStop* stop = nullptr,
                                              ToolEnd* end = nullptr);

// Finds a system tool: in /usr/sbin, else in /usr/bin, else in an absolute
// folder on the PATH. Gives nothing when the tool is not installed. Any thread.
[[nodiscard]] std::optional<std::string> findTool(std::string_view name);

}  // namespace platform
