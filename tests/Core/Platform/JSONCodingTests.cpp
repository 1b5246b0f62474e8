#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <gtest/gtest.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using enum DecodingError::Reason;

struct Leaf {
    qint64 number = 0;
    std::optional<QString> note, mood;
};

struct Tree {
    QString name;
    QList<Leaf> leaves;
};

template <>
inline constexpr auto keyTable<Leaf> = std::tuple(required("n", &Leaf::number),
                                                  optional("note", &Leaf::note),
                                                  lenient("mood", &Leaf::mood));

template <>
inline constexpr auto keyTable<Tree> = std::tuple(required("name", &Tree::name),
                                                  required("leaves", &Tree::leaves));

TEST(JSONCodingTest, WritesWhatItReadsInTheOrderOfTheTable) {
    const struct {
        QByteArray read, written;
    } cases[] = {
        {R"( {"leaves":[],"name":"ü\"\n\u2028😀","more":[]} )",
         "{\"name\":\"ü\\\"\\n\u2028😀\",\"leaves\":[]}"},
        {"\xEF\xBB\xBF{\"name\":\"\",\"leaves\":[]}", R"({"name":"","leaves":[]})"},
        {R"({"name":"\uFEFFü\"","leaves":[]})", "{\"name\":\"\uFEFFü\\\"\",\"leaves\":[]}"},
        {R"({"name":"","leaves":[{"note":null,"n":5.0},{"n":9223372036854775807,"mood":7}]})",
         R"({"name":"","leaves":[{"n":5},{"n":9223372036854775807}]})"},
    };
    for (const auto &row : cases) {
        const Decoded<Tree> tree = decodeJSON<Tree>(row.read);
        ASSERT_TRUE(std::holds_alternative<Tree>(tree)) << row.read.constData();
        EXPECT_EQ(encodeJSON(std::get<Tree>(tree)), row.written);
    }
}

TEST(JSONCodingTest, KeepsByteOrderMarksInsideTexts) {
    using Texts = QMap<QString, QString>;
    const Texts texts{{u"\uFEFFl"_s, u"\uFEFF"_s}, {u"l"_s, u"\uFEFF\uFEFFü\uFEFF"_s}};
    const Decoded<Texts> again = decodeJSON<Texts>(encodeJSON(texts));
    ASSERT_TRUE(std::holds_alternative<Texts>(again));
    EXPECT_EQ(std::get<Texts>(again), texts);
}

TEST(JSONCodingTest, SaysWhatIsWrongAndWhere) {
    const struct {
        QByteArray text;
        DecodingError::Reason reason = notJSON;
        QString path = {};
    } cases[] = {
        {R"({"leaves":[]})", keyNotFound, u"name"_s},
        {R"({"name":"","leaves":[{"n":1},{"note":""}]})", keyNotFound, u"leaves[1].n"_s},
        {R"({"name":"","leaves":[{"n":1,"note":[]}]})", typeMismatch, u"leaves[0].note"_s},
        {R"({"name":"","leaves":[{"n":5.5}]})", typeMismatch, u"leaves[0].n"_s},
        {R"({"name":"","leaves":[{"n":9223372036854775808}]})", typeMismatch, u"leaves[0].n"_s},
        {"\xEF\xBB\xBF\xEF\xBB\xBF{}"},
        {"\"\xff\""},
        {QByteArray("1\0", 2)},
    };
    for (const auto &row : cases) {
        const Decoded<Tree> result = decodeJSON<Tree>(row.text);
        const DecodingError *const error = std::get_if<DecodingError>(&result);
        ASSERT_TRUE(error) << row.text.left(50).constData();
        EXPECT_EQ(error->reason, row.reason) << row.text.left(50).constData();
        EXPECT_EQ(error->path, row.path);
    }
}

} // namespace KestrioKit
