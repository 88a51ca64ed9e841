#include "simulator/default_session.h"
#include "tests/bank_map/sessions/named_sessions.h"
#include "tests/bank_map/sessions/session_names.h"

#include <utility>

namespace lumbrine {

namespace {

std::function<void(SimulatedProTools&)> editing(Edit edit) {
    return [edit = std::move(edit)](SimulatedProTools& proTools) { proTools.edit(edit); };
}

std::function<void(SimulatedProTools&)> opening(MakeSession next) {
    return [next = std::move(next)](SimulatedProTools& proTools) { proTools.exchangeSession(next()); };
}

} // namespace

std::vector<NamedSession> changingSessions() {
    const auto add = [](std::size_t at) {
        return editing([at](SimulatedSession& session) { session.add(trackCalled("New"), at); });
    };
    const auto hide = editing([](SimulatedSession& session) { session.setHidden(idOf(session, 20), true); });
    return {
        {.name = "added_at_the_end", .session = numbered(24), .meanwhile = add(24)},
        {.name = "added_at_the_top", .session = numbered(24), .meanwhile = add(0)},
        {.name = "added_elsewhere", .session = numbered(40), .visited = 27, .meanwhile = add(30)},
        {.name = "added_before_the_list",
         .session = numbered(40),
         .visited = 27,
         .meanwhile = add(30),
         .listLags = true},
        {.name = "removed_elsewhere",
         .session = numbered(40),
         .visited = 25,
         .meanwhile = editing([](SimulatedSession& session) { session.remove(idOf(session, 30)); })},
        {.name = "hidden_later", .session = numbered(40), .visited = 16, .meanwhile = hide},
        {.name = "renamed", .session = numbered(24), .meanwhile = editing([](SimulatedSession& session) {
                                                         session.rename(idOf(session, 20), "Solo");
                                                     })},
        {.name = "reordered", .session = numbered(24), .meanwhile = editing([](SimulatedSession& session) {
                                                           session.move(idOf(session, 1), 21);
                                                       })},
        {.name = "all_removed",
         .session = numbered(12),
         .listed = Found::unsure,
         .unlisted = Found::unsure,
         .meanwhile = editing([](SimulatedSession& session) {
             while (!session.tracks().empty())
                 session.remove(idOf(session, 0));
         })},
        {.name = "tracks_in_an_empty_session",
         .session = numbered(0),
         .meanwhile = editing([](SimulatedSession& session) {
             for (const std::string& name : some(0, 12))
                 session.add(trackCalled(name));
         })},
        {.name = "template_two_sessions",
         .session = flat(some(0, 40)),
         .meanwhile =
             [](SimulatedProTools& proTools) {
                 proTools.exchangeSession(sessionOfSameTemplate(proTools.session(), 9));
             }},
        {.name = "template_with_more", .session = numbered(24), .meanwhile = opening(numbered(40))},
        {.name = "template_with_fewer", .session = numbered(40), .meanwhile = opening(numbered(24))},
        {.name = "template_with_another_middle",
         .session = named(some(0, 32)),
         .visited = 8,
         .meanwhile = opening(named(some(0, 12) + some(40, 44) + some(16, 32)))},
        {.name = "another_session", .session = numbered(24), .meanwhile = opening(named(some(30, 64)))},
        {.name = "an_empty_session_after_one",
         .session = numbered(24),
         .listed = Found::unsure,
         .unlisted = Found::unsure,
         .meanwhile = opening(numbered(0))},
    };
}

} // namespace lumbrine
