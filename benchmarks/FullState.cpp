#include "benchmarks/FullState.h"

using namespace KestrioKit;
using namespace Qt::StringLiterals;

PersistentQueue fullState(qint64 recordsOfAKind) {
    PersistentQueue state;
    state.visitorIdentifier = visitorOfFullState;
    state.visitorToken = u"22C51FA0-2C5F-4383-8F83-3E82F7502192"_s;
    for (qint64 index = 0; index < recordsOfAKind; ++index) {
        Request::TrackEvent event;
        event.event = u"Catalogue Opened"_s;
        state.events.append(event);
        Request::SurveyResponse response;
        response.body.responses.append(
            {.questionId = index,
             .value = CodableDynamicType::stringValue(u"The quick delivery"_s),
             .seenAt = 1.5,
             .answeredAt = 2.5,
             .questionType = {}});
        state.surveys.append(response);
        state.errors.append(Request::RecordError{});
        state.history.append(Request::SurveyEvent{});
        Request::UpdateAttribute attribute;
        attribute.key = u"plan"_s;
        attribute.value = u"pro"_s;
        state.attributes.append(attribute);
    }
    return state;
}
