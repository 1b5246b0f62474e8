#include "KestrioKit/Core/Platform/DeviceFacts.h"
#include "KestrioKit/Core/Platform/LanguageBundle.h"

#include <gtest/gtest.h>

#include <QSet>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

// Qt looks at the user's languages once, when the application object is made.
[[maybe_unused]] static const bool languagesChosen = qputenv("LANGUAGE", "fr_CA:xx:en_GB:fr_CA");

static const QString missing = u"missing"_s;

static QStringList texts(const QString &language) {
    AnyLanguageBundle bundle;
    bundle.setLanguage(language);
    QStringList texts;
    for (const auto &key :
         {u"Next"_s, u"Finish"_s, u"Thanks!"_s, u"I think that..."_s, u"Close"_s, u"%1 of %2"_s})
        texts.append(bundle.localizedString(key, missing));
    return texts;
}

TEST(LanguageBundle, HasATableOfItsOwnWithEveryKeyForEachLanguage) {
    QSet<QStringList> tables;
    for (const QString &language : AnyLanguageBundle::languages()) {
        EXPECT_FALSE(texts(language).contains(missing)) << qPrintable(language);
        tables.insert(texts(language));
    }
    EXPECT_EQ(tables.size(), 44);
}

TEST(LanguageBundle, FindsTheClosestTableAndElseTheUsersLanguage) {
    EXPECT_EQ(preferredLanguages(), (QStringList{u"fr-CA"_s, u"xx"_s, u"en-GB"_s}));
    EXPECT_EQ(AnyLanguageBundle().localizedString(u"Next"_s), u"Suivant"_s);
    const std::pair<QString, QString> cases[] = {
        {u"pt-BR"_s, u"pt_BR PT-br"_s},
        {u"pt"_s, u"pt-PT"_s},
        {u"de"_s, u"de-AT de_Latn_CH"_s},
        {u"zh-Hans"_s, u"zh zh-CN zh_SG zh-Hans-HK"_s},
        {u"zh-Hant"_s, u"zh_tw zh-HK zh-MO zh-Hant-TW"_s},
        {u"nb"_s, u"no nn-NO"_s},
        {u"he"_s, u"iw"_s},
        {u"id"_s, u"in_ID"_s},
        {u"fr"_s, u"xx d - ../KestrioKit/de"_s},
    };
    for (const auto &[language, names] : cases) {
        for (const QString &name : names.split(u' '))
            EXPECT_EQ(texts(name), texts(language)) << qPrintable(name);
    }
    // Looking at each of its parts would take longer than the test may.
    EXPECT_EQ(texts(u"de"_s + u"-x"_s.repeated(5'000'000)), texts(u"de"_s));
}
