#pragma once

#include <QPointer>

#include <type_traits>

namespace KestrioKit {

/// A delegate that may go before the one who tells it: then nobody is told. `Delegate` is an
/// interface; what stands behind it must be a `QObject` as well.
///
///     if (auto *const delegate = m_delegate.get())
///         delegate->questionDidFinish(answer);
template <typename Delegate>
class WeakDelegate {
public:
    WeakDelegate() = default;

    template <typename Object>
    requires std::is_base_of_v<Delegate, Object> WeakDelegate(Object *object)
        : m_object(object), m_delegate(object) {}

    /// Null when there is none, or none any more.
    Delegate *get() const { return m_object ? m_delegate : nullptr; }

private:
    QPointer<QObject> m_object;
    Delegate *m_delegate = nullptr;
};

} // namespace KestrioKit
