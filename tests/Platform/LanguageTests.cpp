#include "KestrioKit/Platform/DeviceFacts.h"
#include "KestrioKit/Platform/LanguageBundle.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

// Qt looks at the user's languages once, when the application object is made.
[[maybe_unused]] static const bool languagesChosen = qputenv("LANGUAGE", "fr_CA:xx:en_GB:fr_CA");

TEST(LanguageBundle, translatesEveryKeyAndFallsBackToTheUsersLanguage) {
    EXPECT_EQ(DeviceFacts::current().preferredLanguages,
              (QStringList{u"fr-CA"_s, u"xx"_s, u"en-GB"_s}));
    AnyLanguageBundle bundle;
    for (const QString &language : AnyLanguageBundle::languages()) {
        bundle.setLanguage(language);
        for (const QString &key : {u"Next"_s, u"Finish"_s, u"Thanks!"_s, u"I think that..."_s}) {
            const QString text = bundle.localizedString(key, u"missing"_s);
            EXPECT_NE(text, u"missing"_s) << qPrintable(language + key);
            EXPECT_EQ(text == key, language.startsWith("en"_L1)) << qPrintable(language + key);
        }
        bundle.setLanguage(u"../KestrioKit/"_s + language);
        EXPECT_EQ(bundle.localizedString(u"Next"_s), u"Suivant"_s);
    }
}
