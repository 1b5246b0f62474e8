#pragma once

#include <QJSValue>
#include <QObject>
#include <QPointer>
#include <QVariant>

#include <memory>

class QJSEngine;

namespace KestrioKit {

/// Calls a JavaScript function. An exception in the function becomes a warning of the engine, as in
/// a handler of a signal.
class QuickFunction final : public QObject {
    Q_OBJECT

public:
    QuickFunction(QJSEngine &engine, const QJSValue &function, QObject *parent);

Q_SIGNALS:
    /// Connected to the function, because only a signal reports exceptions completely.
    void called(const QVariant &argument);
};

/// A JavaScript function that handlers of the library may hold and call for as long as they like.
/// Copies share the function. It belongs to an owner that is destroyed before the engine, and calls
/// afterwards do nothing. Used on the main thread.
class QuickCallback final {
public:
    /// `function` must be callable.
    QuickCallback(QJSEngine &engine, const QJSValue &function, QObject *owner);

    /// Returns an object that exists for as long as the function can be called.
    const QObject *context() const { return m_function->data(); }

    /// Calls the function.
    void operator()(const QVariant &argument = {}) const;

private:
    std::shared_ptr<const QPointer<QuickFunction>> m_function;
};

} // namespace KestrioKit
