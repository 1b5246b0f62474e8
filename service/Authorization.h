#pragma once

#include "service/RecordStore.h"
#include "service/Router.h"

#include <string>

namespace SurveyService {

/// The token that the request bears ("Authorization: Bearer TOKEN", RFC 6750); empty without one.
std::string bearerToken(const Call &call);

/// The visitor whose token the request bears. Throws Refusal 401 when there is none, or another one
/// than the path names by "vid" and "env".
Visitor requireVisitor(const Call &call, RecordStore &records);

} // namespace SurveyService
