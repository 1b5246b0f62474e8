#include "KestrioKit/Platform/DeviceFacts.h"
#include "KestrioKit/Platform/LanguageBundle.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>

#include <thread>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

// Qt looks at the user's languages once, when the application object is made.
[[maybe_unused]] const bool languagesChosen = qputenv("LANGUAGE", "fr_CA:xx:en_GB:fr_CA");

} // namespace

TEST(DeviceFacts, listTheUsersLanguagesOnce) {
    const DeviceFacts facts = DeviceFacts::current();
    EXPECT_EQ(facts.preferredLanguages, (QStringList{u"fr-CA"_s, u"xx"_s, u"en-GB"_s}));
    EXPECT_EQ(facts.languageCode, u"fr"_s);

    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(DeviceFacts::current().languageCode, u"en"_s);
    QLocale::setDefault(QLocale::system());
}

TEST(DeviceFacts, knowTheScreenOnEveryThread) {
    const QSize size = QGuiApplication::primaryScreen()->geometry().size();
    ASSERT_FALSE(size.isEmpty());
    DeviceFacts facts;
    std::thread([&facts] { facts = DeviceFacts::current(); }).join();
    EXPECT_EQ(facts, DeviceFacts::current());
    EXPECT_EQ(facts.screenSize, size);
    EXPECT_FALSE(facts.osVersion.isEmpty() || facts.machine.isEmpty());
}

TEST(LanguageBundle, translatesEveryKeyIntoEveryLanguage) {
    AnyLanguageBundle bundle;
    ASSERT_TRUE(AnyLanguageBundle::languages().contains(u"fr"_s));
    for (const QString &language : AnyLanguageBundle::languages()) {
        bundle.setLanguage(language);
        for (const QString &key : {u"Next"_s, u"Finish"_s, u"Thanks!"_s, u"I think that..."_s}) {
            const QString text = bundle.localizedString(key, u"missing"_s);
            EXPECT_NE(text, u"missing"_s) << qPrintable(language + u": "_s + key);
            EXPECT_EQ(text == key, language.startsWith("en"_L1)) << qPrintable(language + key);
        }
    }
    bundle.setLanguage(u"fr"_s);
    EXPECT_EQ(bundle.localizedString(u"Next"_s), u"Suivant"_s);
    EXPECT_EQ(bundle.localizedString(u"Previous"_s), u"Previous"_s);
    EXPECT_EQ(bundle.localizedString(u"Previous"_s, u"Précédent"_s), u"Précédent"_s);
}

TEST(LanguageBundle, fallsBackToTheUsersLanguage) {
    AnyLanguageBundle bundle;
    EXPECT_EQ(bundle.localizedString(u"Next"_s), u"Suivant"_s);
    for (const QString &unknown : {u""_s, u"tlh"_s, u"DE"_s, u"de-AT"_s, u"../KestrioKit/de"_s}) {
        bundle.setLanguage(u"de"_s);
        bundle.setLanguage(unknown);
        EXPECT_EQ(bundle.localizedString(u"Next"_s), u"Suivant"_s) << qPrintable(unknown);
    }
}

TEST(LanguageBundle, canBeSwitchedWhileItIsRead) {
    AnyLanguageBundle bundle;
    std::thread writer([&bundle] {
        for (int round = 0; round < 200; ++round)
            bundle.setLanguage(round % 2 ? u"ja"_s : u"de"_s);
    });
    const QStringList known{u"Suivant"_s, u"次へ"_s, u"Weiter"_s};
    for (int round = 0; round < 200; ++round)
        EXPECT_TRUE(known.contains(bundle.localizedString(u"Next"_s)));
    writer.join();
    EXPECT_EQ(bundle.localizedString(u"Next"_s), u"次へ"_s);
}
