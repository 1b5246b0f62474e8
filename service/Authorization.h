#pragma once

#include "service/RecordStore.h"
#include "service/Router.h"

#include <optional>

namespace SurveyService {

/// The visitor whose token the request bears ("Authorization: Bearer TOKEN", RFC 6750), absent
/// when it bears none or an unknown one.
std::optional<Visitor> bearer(const Call &call, RecordStore &records);

/// The same for what belongs to a visitor. Throws Refusal 401 when there is no such visitor, or
/// another one than the path names by "vid" and "env".
Visitor requireVisitor(const Call &call, RecordStore &records);

} // namespace SurveyService
