// SPDX-License-Identifier: MIT
#include "platform/render/gl/GpuTimer.h"

namespace platform {

GpuTimer::GpuTimer(bool enabled) : enabled_(enabled) {
    if (!enabled_) return;
    for (Question& question : questions_)
        question.query = GlQuery::make();
}

void GpuTimer::begin() {
    if (!enabled_) return;
    for (Question& question : questions_) {
        GLuint answered = GL_FALSE;
        if (!question.asked) continue;
        glGetQueryObjectuiv(question.query.name(), GL_QUERY_RESULT_AVAILABLE, &answered);
        if (answered == GL_FALSE) continue;
        GLuint64 nanoseconds = 0;
        glGetQueryObjectui64v(question.query.name(), GL_QUERY_RESULT, &nanoseconds);
        seconds_ = 1e-9 * static_cast<double>(nanoseconds);
        question.asked = false;
    }
    if (questions_[next_].asked) return;
    glBeginQuery(GL_TIME_ELAPSED, questions_[next_].query.name());
    running_ = true;
}

void GpuTimer::end() {
    if (!running_) return;
    glEndQuery(GL_TIME_ELAPSED);
    running_ = false;
    questions_[next_].asked = true;
    next_ = (next_ + 1) % questions_.size();
}

}  // namespace platform
