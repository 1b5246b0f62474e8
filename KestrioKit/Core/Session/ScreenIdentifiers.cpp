#include "KestrioKit/Core/Session/ScreenIdentifiers.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

QString ScreenIdentifiers::card() const {
    return u"Kestrio Survey"_s;
}

QString ScreenIdentifiers::closeButton() const {
    return u"Close button"_s;
}

QString ScreenIdentifiers::textField() const {
    return u"Open question prompt"_s;
}

QString ScreenIdentifiers::textSubmitButton() const {
    return u"Open question button"_s;
}

QString ScreenIdentifiers::multiSelectSubmitButton() const {
    return u"Multi-select submit button"_s;
}

QString ScreenIdentifiers::scaleOption(int value) const {
    return u"Option "_s + QString::number(value);
}

QString ScreenIdentifiers::multipleChoiceOption(const QString &label) const {
    return u"Multi-choice option: "_s + label;
}

QString ScreenIdentifiers::multiSelectOption(const QString &label, bool isSelected) const {
    return u"Multi-select option: "_s + label + (isSelected ? u"-selected"_s : QString());
}

} // namespace KestrioKit
