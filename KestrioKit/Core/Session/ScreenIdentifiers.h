#pragma once

#include "KestrioKit/KestrioKitExport.h"

#include <QObject>
#include <QString>

namespace KestrioKit {

/// The names by which automations find the parts of the survey screens, in every language: the
/// object names of widgets and of Qt Quick items. A gadget in QML.
struct KESTRIOKIT_EXPORT ScreenIdentifiers {
    Q_GADGET
    Q_PROPERTY(QString card READ card CONSTANT)
    Q_PROPERTY(QString closeButton READ closeButton CONSTANT)
    Q_PROPERTY(QString textField READ textField CONSTANT)
    Q_PROPERTY(QString textSubmitButton READ textSubmitButton CONSTANT)
    Q_PROPERTY(QString multiSelectSubmitButton READ multiSelectSubmitButton CONSTANT)

public:
    QString card() const;
    QString closeButton() const;

    /// The text field of an open question, and the button that sends the text.
    QString textField() const;
    QString textSubmitButton() const;

    /// The button that sends the answer to a multi-select question.
    QString multiSelectSubmitButton() const;

    /// Returns the name of the button that shows `value` on a scale.
    Q_INVOKABLE QString scaleOption(int value) const;
    /// Returns the name of an option of a multiple-choice question.
    Q_INVOKABLE QString multipleChoiceOption(const QString &label) const;
    /// Returns the name of an option of a multi-select question. It changes with the selection.
    Q_INVOKABLE QString multiSelectOption(const QString &label, bool isSelected) const;
};

inline constexpr ScreenIdentifiers screenIdentifiers;

} // namespace KestrioKit
