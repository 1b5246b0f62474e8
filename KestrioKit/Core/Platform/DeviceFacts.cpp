#include "KestrioKit/Core/Platform/DeviceFacts.h"

#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QSysInfo>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <sys/utsname.h>
#endif

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// Keeps the primary screen's size for all threads, since screens may only be used on the
/// application's thread.
class ScreenSize {
public:
    static ScreenSize &shared() {
        static auto *const size = new ScreenSize;
        return *size;
    }

    std::optional<QSize> value() const { return m_size.value(); }

private:
    ScreenSize()
        : m_created(ApplicationLifecycle::shared().observe(ApplicationLifecycle::Event::created,
                                                           [this] { followScreens(); })) {
        // The library may be loaded long after the application was created, and on any thread.
        if (ApplicationLifecycle::shared().applicationExists())
            ApplicationLifecycle::shared().mainExecutor().post([this] { followScreens(); });
    }

    void followScreens() {
        auto *const application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
        if (!application)
            return;
        // There may be no screen yet, or none for a while.
        QObject::connect(application, &QGuiApplication::screenAdded, application,
                         [this](QScreen *screen) { followScreen(screen); });
        QObject::connect(application, &QGuiApplication::primaryScreenChanged, application,
                         [this] { update(); });
        for (QScreen *const screen : QGuiApplication::screens())
            followScreen(screen);
    }

    void followScreen(QScreen *screen) {
        QObject::connect(screen, &QScreen::geometryChanged, screen, [this] { update(); });
        update();
    }

    void update() {
        if (const QScreen *const screen = QGuiApplication::primaryScreen())
            m_size.setValue(screen->geometry().size());
    }

    Atomic<std::optional<QSize>> m_size;
    ApplicationLifecycle::Observation m_created;
};

// Created when the library is loaded, so that no application object is missed.
[[maybe_unused]] const ScreenSize &screenSize = ScreenSize::shared();

constexpr auto posixLanguage = "C"_L1;
constexpr auto posixLanguageCode = "en"_L1;
constexpr auto unknown = "Unknown"_L1;

QString languageCode() {
    const QString code = QLocale::languageToCode(QLocale().language());
    return code == posixLanguage ? posixLanguageCode : code;
}

bool isSameLanguage(const QString &left, const QString &right) {
    if (left == right)
        return true;
    const QLocale locale(left);
    return locale.language() != QLocale::C && locale == QLocale(right);
}

QString osVersion() {
    const QString version = QSysInfo::productVersion();
    return version == "unknown"_L1 ? unknown : version;
}

QString machine() {
#ifdef Q_OS_UNIX
    utsname names{};
    if (uname(&names) == 0)
        return QString::fromLocal8Bit(names.machine);
#endif
    return QSysInfo::currentCpuArchitecture();
}

} // namespace

DeviceFacts DeviceFacts::current() {
    // Never destroyed, since hosts may call this while the process ends.
    static const auto *const version = new QString(::KestrioKit::osVersion());
    static const auto *const hardware = new QString(::KestrioKit::machine());
    return {ScreenSize::shared().value(), ::KestrioKit::languageCode(), *version, *hardware};
}

// Qt lists each of the user's languages in several spellings: en-GB, en-Latn-GB, fr, fr-Latn-FR,
// fr-FR. Only the first spelling of each is used. "C" stands for no language or one that Qt does
// not know.
QStringList preferredLanguages() {
    QStringList languages;
    for (const QString &language : QLocale::system().uiLanguages()) {
        const auto isKnown = [&](const QString &known) {
            return isSameLanguage(known, language);
        };
        if (language != posixLanguage && std::ranges::none_of(languages, isKnown))
            languages.append(language);
    }
    return languages.isEmpty() ? QStringList(posixLanguageCode) : languages;
}

} // namespace KestrioKit
