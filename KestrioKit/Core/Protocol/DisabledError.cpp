#include "KestrioKit/Core/Protocol/DisabledError.h"

#include "KestrioKit/Core/Platform/Logging.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

QString DisabledError::localizedDescription() const {
    switch (kind) {
    case version:
        return u"The survey service refuses this version of KestrioKit. Update the library."_s;
    case environment:
        return u"The survey service refuses this environment. Check the environment id that is "
               "given to configure()."_s;
    case local:
        return u"KestrioKit is switched off: network access is disabled, or the configuration "
               "could not be fetched. Enable network access, or call configure() again."_s;
    case other:
        break;
    }
    return u"The survey service has disabled KestrioKit: %1"_s.arg(otherText);
}

const DisabledError &DisabledError::locally() {
    static const auto *const error = new DisabledError{local, {}};
    return *error;
}

Error DisabledError::toError() const {
    return {disabledErrorDomain, int(kind), localizedDescription()};
}

bool isDisabledError(const Error &error) {
    return error.domain == disabledErrorDomain;
}

QString printedForm(const DisabledError &error) {
    switch (error.kind) {
    case DisabledError::version:
        return u"version"_s;
    case DisabledError::environment:
        return u"environment"_s;
    case DisabledError::local:
        return u"local"_s;
    case DisabledError::other:
        break;
    }
    return u"other("_s + printedForm(error.otherText) + u')';
}

} // namespace KestrioKit
