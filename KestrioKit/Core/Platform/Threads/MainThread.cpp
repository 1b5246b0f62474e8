#include "KestrioKit/Core/Platform/Threads/MainThread.h"

#include <QCoreApplication>
#include <QThread>

namespace KestrioKit {

bool isOnMainThread() {
    const QCoreApplication *const application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

void onMain(const Block &block) {
    if (isOnMainThread())
        block();
    else
        DispatchQueue::main().async(block);
}

} // namespace KestrioKit
