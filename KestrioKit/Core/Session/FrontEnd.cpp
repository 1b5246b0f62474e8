#include "KestrioKit/Core/Session/FrontEnd.h"

#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <QList>

namespace KestrioKit {

namespace {

// Made when the first front end is loaded, which may be before this file's own objects are.
Atomic<QList<FrontEnd *>> &frontEnds() {
    static auto *const all = new Atomic<QList<FrontEnd *>>;
    return *all;
}

} // namespace

FrontEnd::~FrontEnd() = default;

void FrontEnd::add(FrontEnd *frontEnd) {
    frontEnds().mutate([frontEnd](QList<FrontEnd *> &all) { all.append(frontEnd); });
}

FrontEnd *FrontEnd::suitableFor(const QObject &host) {
    for (FrontEnd *const frontEnd : frontEnds().value()) {
        if (frontEnd->suits(host))
            return frontEnd;
    }
    return nullptr;
}

} // namespace KestrioKit
