#pragma once

#include "service/RecordStore.h"
#include "service/Router.h"

#include <string>

namespace SurveyService {

/// Returns the request's bearer token ("Authorization: Bearer TOKEN", RFC 6750); empty if there is
/// none.
std::string bearerToken(const Call &call);

/// Returns the visitor to whom the request's token belongs. Throws Refusal 401 if there is no such
/// visitor, or if the path names another visitor by "vid" or another environment by "env".
Visitor requireVisitor(const Call &call, RecordStore &records);

} // namespace SurveyService
