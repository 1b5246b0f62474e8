#pragma once

#include <QString>
#include <QWidget>

/// The kinds of texts and buttons on the page. The style sheet selects their appearance by kind.
namespace Look {
inline constexpr auto title = "title";
inline constexpr auto heading = "heading";
inline constexpr auto quiet = "quiet";
inline constexpr auto total = "total";
inline constexpr auto primary = "primary";
} // namespace Look

/// The name of the property that holds a widget's kind.
inline constexpr auto lookProperty = "look";

/// Sets the widget's kind and returns the widget.
template <typename View>
View *inLook(View *view, const char *look) {
    view->setProperty(lookProperty, QString::fromLatin1(look));
    return view;
}

/// Sets the control's accessible name, which is also its accessibility identifier. Returns the
/// control.
template <typename Control>
Control *named(Control *control, const QString &name) {
    control->setObjectName(name);
    control->setAccessibleName(name);
    return control;
}

/// Sets fonts, colours and style of the whole program. Requires the application object.
void applyDemoStyle();

/// Returns the style sheet of the page. Set it on the page only, so that it does not affect
/// surveys.
QString demoStyleSheet();
