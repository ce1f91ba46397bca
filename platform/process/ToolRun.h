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

// A program to run and its arguments, the program's own name not among them.
struct ToolCall {
    std::string program;  // a path; no search is done
    std::vector<std::string> arguments;
    std::size_t mostBytes = SIZE_MAX;  // of its output
    double mostSeconds = 0.0;          // until its end; 0 is for ever
};

// How a run of a tool came to its end.
enum class ToolEnd {
    done,        // with exit status 0 or 1
    failed,      // with another status, or by a signal
    notStarted,  // or without memory for its text
    stopped,     // as was requested
    late,        // it took more than mostSeconds
    tooMuch,     // it wrote more than mostBytes
};

// Everything a tool wrote to its standard output. Move-only owner; grows where
// it lies, so a large text is not copied as it comes in.
class ToolText {
  public:
    [[nodiscard]] std::string_view text() const { return {data_.get(), size_}; }

    // Room for at least `room` more bytes; nothing when there is no memory.
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

// A request to give up, from any thread, for good: it ends the tool that is
// running under it and every later one. Must outlive those runs.
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

// Runs a tool, reads its standard output to the end and waits for it to exit;
// its exit status is not looked at. Its input is empty, its standard error is
// thrown away, it inherits no other descriptor and all signals as usual.
//
// Blocks the calling thread. Nothing when the tool could not be started, when
// `stop` was requested, when it took too long or wrote too much, or when its text
// does not fit into memory; the tool is then killed with its process group. The
// kernel kills it too when the calling thread ends first, however that came
// about. How it ended is left in `end`. Any thread.
[[nodiscard]] std::optional<ToolText> runTool(const ToolCall& call, const ToolStop* stop = nullptr,
                                              ToolEnd* end = nullptr);

// The path of a system tool: in /usr/sbin, else in /usr/bin, else in an absolute
// folder on the PATH. Nothing when it is not installed. Any thread.
[[nodiscard]] std::optional<std::string> findTool(std::string_view name);

}  // namespace platform
