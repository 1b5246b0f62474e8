#pragma once

#include <QString>
#include <QWidget>

/// What a text or a button is on the page, which decides about its looks.
namespace Look {
inline constexpr auto title = "title";
inline constexpr auto heading = "heading";
inline constexpr auto quiet = "quiet";
inline constexpr auto total = "total";
inline constexpr auto primary = "primary";
} // namespace Look

/// The name of the property that says which of the looks a widget has.
inline constexpr auto lookProperty = "look";

template <typename View>
View *inLook(View *view, const char *look) {
    view->setProperty(lookProperty, QString::fromLatin1(look));
    return view;
}

/// Gives a control its accessible name, which is its accessibility identifier, too.
template <typename Control>
Control *named(Control *control, const QString &name) {
    control->setObjectName(name);
    control->setAccessibleName(name);
    return control;
}

/// Fonts, colours and the style for the whole program. Needs the application.
void applyDemoStyle();

/// How the page looks. For the page alone, so that it reaches nothing that lies over it.
QString demoStyleSheet();
