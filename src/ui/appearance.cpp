#include "ui/appearance.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QWindow>

namespace ulvak {
namespace {

using ColorScheme = DesktopScheme::Scheme;

/// What Qt itself knows; nothing in the oldest supported version.
ColorScheme toolkitScheme() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    switch (QGuiApplication::styleHints()->colorScheme()) {
        case Qt::ColorScheme::Dark:
            return ColorScheme::dark;
        case Qt::ColorScheme::Light:
            return ColorScheme::light;
        case Qt::ColorScheme::Unknown:
            break;
    }
#endif
    return ColorScheme::unsaid;
}

}  // namespace

DesktopAppearance::DesktopAppearance() {
    connect(&desktop_, &DesktopScheme::changed, this, &DesktopAppearance::changed);
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this,
            &DesktopAppearance::changed);
#endif
}

QString DesktopAppearance::wish() const {
    const ColorScheme known = toolkitScheme();
    switch (known == ColorScheme::unsaid ? desktop_.current() : known) {
        case ColorScheme::dark:
            return QStringLiteral("dark");
        case ColorScheme::light:
            return QStringLiteral("light");
        case ColorScheme::unsaid:
            break;
    }
    return {};
}

void DesktopAppearance::follow(QWindow& window) {
    const auto show = [this, &window] { window.setProperty("desktopAppearance", wish()); };
    show();
    connect(this, &DesktopAppearance::changed, &window, show);
}

}  // namespace ulvak
