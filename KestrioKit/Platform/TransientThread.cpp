#include "KestrioKit/Platform/TransientThread.h"

namespace KestrioKit {

using std::chrono::milliseconds;

TransientThread::TransientThread() {
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(int(milliseconds(idleLimit).count()));
    m_applicationTerminated =
        ApplicationLifecycle::shared().observe(ApplicationLifecycle::Event::terminated, [this] {
            m_pool.waitForDone(int(milliseconds(stopLimit).count()));
        });
}

void TransientThread::post(Block block) {
    m_pool.start(std::move(block));
}

} // namespace KestrioKit
