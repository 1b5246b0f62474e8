#include "KestrioKit/Core/Session/FrontEnd.h"

#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <QList>

namespace KestrioKit {

namespace {

// Created on first use: a front end may register before this file's own statics are initialized.
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
