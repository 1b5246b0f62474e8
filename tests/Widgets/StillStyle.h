#pragma once

#include <QProxyStyle>

namespace KestrioKit {

/// A host's style, without animations.
class StillStyle : public QProxyStyle {
public:
    StillStyle() : QProxyStyle(QStringLiteral("fusion")) {}
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override {
        const int usual = QProxyStyle::styleHint(hint, option, widget, data);
        return hint == SH_Widget_Animation_Duration ? 0 : usual;
    }
};

} // namespace KestrioKit
