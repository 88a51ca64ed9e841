#include "tests/simulation/source_watch.h"

#include "model/testing/session_columns.h"

namespace lumbrine::simulation {

SourceWatch::SourceWatch(Runtime& rt, const ReceiverState& receiverState)
    : runtime(rt), state(receiverState), timer(rt.repeatOnMain(seconds(0.2), [this] { look(); })) {}

void SourceWatch::look() {
    const Session& session = state.published.session;
    const ToldTracks now{.at = runtime.now(),
                         .map = displaysOf(session),
                         .full = namesOf(session),
                         .colors = column(session, &Track::color),
                         .comments = column(session, &Track::comment)};
    if (!told.empty()) {
        const ToldTracks& last = told.back();
        if (last.full == now.full && last.map == now.map && last.colors == now.colors && last.comments == now.comments)
            return;
    }
    told.push_back(now);
}

} // namespace lumbrine::simulation
