#include "KestrioKit/Core/Queue/ReachabilityError.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

QString failedStep(const ReachabilityError &error) {
    using Reason = ReachabilityError::Reason;
    switch (error.reason) {
    case Reason::failedToCreateWithAddress:
    case Reason::failedToCreateWithHostname:
        return u"watching the way to "_s + error.target;
    case Reason::unableToSetCallback:
        return u"setting the callback"_s;
    case Reason::unableToSetDispatchQueue:
        return u"setting the dispatch queue"_s;
    case Reason::unableToGetFlags:
        return u"reading the flags"_s;
    }
    return {};
}

} // namespace

Error ReachabilityError::toError() const {
    return {reachabilityErrorDomain, int(reason),
            u"The network’s reachability is unknown: %1 failed with error %2 (%3)."_s.arg(
                failedStep(*this), QString::number(code), qt_error_string(code))};
}

} // namespace KestrioKit
