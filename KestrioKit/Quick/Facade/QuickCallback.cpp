#include "KestrioKit/Quick/Facade/QuickCallback.h"

#include <QJSEngine>

namespace KestrioKit {

using namespace Qt::StringLiterals;

QuickFunction::QuickFunction(QJSEngine &engine, const QJSValue &function, QObject *parent)
    : QObject(parent) {
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    const QJSValue signal = engine.newQObject(this).property(u"called"_s);
    signal.property(u"connect"_s).callWithInstance(signal, {function});
}

QuickCallback::QuickCallback(QJSEngine &engine, const QJSValue &function, QObject *owner)
    : m_function(new QPointer(new QuickFunction(engine, function, owner)),
                 [](const QPointer<QuickFunction> *held) {
                     delete held->data();
                     delete held;
                 }) {}

void QuickCallback::operator()(const QVariant &argument) const {
    if (QuickFunction *const function = m_function->data())
        Q_EMIT function->called(argument);
}

} // namespace KestrioKit
