#include "KestrioKit/Platform/JSONCoding.h"

#include <gtest/gtest.h>

#include <limits>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using Reason = DecodingError::Reason;

namespace {

struct Leaf {
    qint64 number = 0;
    std::optional<QString> note;
    std::optional<bool> mood;

    friend bool operator==(const Leaf &, const Leaf &) = default;
};

struct Tree {
    QString name;
    QList<Leaf> leaves;
    std::optional<QMap<QString, double>> sizes;
    std::optional<Leaf> fruit;

    friend bool operator==(const Tree &, const Tree &) = default;
};

template <typename Value>
std::optional<Value> decoded(const QByteArray &text) {
    const Decoded<Value> result = decodeJSON<Value>(text);
    const Value *const value = std::get_if<Value>(&result);
    return value ? std::optional(*value) : std::nullopt;
}

} // namespace

template <>
inline constexpr auto keyTable<Leaf> = std::tuple(required("n", &Leaf::number),
                                                  optional("note", &Leaf::note),
                                                  lenient("mood", &Leaf::mood));

template <>
inline constexpr auto
    keyTable<Tree> = std::tuple(required("name", &Tree::name), required("leaves", &Tree::leaves),
                                optional("sizes", &Tree::sizes), lenient("fruit", &Tree::fruit));

TEST(JSONCodingTest, WritesKeysInTheOrderOfTheTableAndReadsThemBack) {
    const Tree tree{u"ü\"\n\u2028😀"_s,
                    {{1, u"x"_s, true}, {std::numeric_limits<qint64>::min(), {}, {}}},
                    QMap<QString, double>{{u"b"_s, 0.1}, {u"a"_s, 1e300}},
                    Leaf{std::numeric_limits<qint64>::max(), {}, false}};
    const QByteArray text = encodeJSON(tree);
    EXPECT_EQ(text, "{\"name\":\"ü\\\"\\n\u2028😀\",\"leaves\":[{\"n\":1,\"note\":\"x\",\"mood\":"
                    "true},{\"n\":-9223372036854775808}],\"sizes\":{\"a\":1e300,\"b\":0.1},"
                    "\"fruit\":{\"n\":9223372036854775807,\"mood\":false}}");
    EXPECT_EQ(decoded<Tree>(text), tree);
}

TEST(JSONCodingTest, TakesWhatIsMissingAsTheTableSays) {
    const struct {
        QByteArray text;
        std::optional<Leaf> leaf;
    } cases[] = {
        {R"({"n":1})", Leaf{1, {}, {}}},
        {R"({"n":1,"note":null,"mood":null,"more":[]})", Leaf{1, {}, {}}},
        {R"({"n":1,"mood":"good"})", Leaf{1, {}, {}}},
        {R"({"n":1,"note":7})", {}},
        {R"({"n":null})", {}},
        {R"({})", {}},
    };
    for (const auto &row : cases)
        EXPECT_EQ(decoded<Leaf>(row.text), row.leaf) << row.text.constData();
    EXPECT_EQ(decoded<Tree>(R"({"name":"","leaves":[],"fruit":{"n":"x"}})"), Tree());
    EXPECT_EQ(decoded<std::optional<Leaf>>("null"), std::make_optional(std::optional<Leaf>()));
}

TEST(JSONCodingTest, TakesNumbersForIntegersOnlyWhenTheyAre) {
    const struct {
        QByteArray text;
        std::optional<qint64> number;
    } cases[] = {
        {"0", 0},
        {"-0", 0},
        {"5", 5},
        {"5.0", 5},
        {"5e2", 500},
        {"5.5", {}},
        {"1e300", {}},
        {"9007199254740993", 9007199254740993},
        {"-1e-300", {}},
        {"\"5\"", {}},
        {"true", {}},
        {"null", {}},
        {"9223372036854775807", std::numeric_limits<qint64>::max()},
        {"-9223372036854775808", std::numeric_limits<qint64>::min()},
        {"9223372036854775808", {}},
        {"18446744073709551616", {}},
    };
    for (const auto &row : cases)
        EXPECT_EQ(decoded<qint64>(row.text), row.number) << row.text.constData();
    EXPECT_EQ(decoded<quint64>("-1"), std::nullopt);
}

TEST(JSONCodingTest, SaysWhatIsWrongAndWhere) {
    const struct {
        QByteArray text;
        Reason reason;
        QString path;
    } cases[] = {
        {R"({"leaves":[]})", Reason::keyNotFound, u"name"_s},
        {R"({"name":"","leaves":{}})", Reason::typeMismatch, u"leaves"_s},
        {R"({"name":"","leaves":[{"n":1},{"note":""}]})", Reason::keyNotFound, u"leaves[1].n"_s},
        {R"({"name":"","leaves":[{"n":1,"note":[]}]})", Reason::typeMismatch, u"leaves[0].note"_s},
        {R"({"name":"","leaves":[3]})", Reason::typeMismatch, u"leaves[0]"_s},
        {R"({"name":"","leaves":[],"sizes":{"a":1,"b":"2"}})", Reason::typeMismatch, u"sizes.b"_s},
        {"[]", Reason::typeMismatch, {}},
        {"7", Reason::typeMismatch, {}},
    };
    for (const auto &row : cases) {
        const Decoded<Tree> result = decodeJSON<Tree>(row.text);
        const DecodingError *const error = std::get_if<DecodingError>(&result);
        ASSERT_TRUE(error) << row.text.constData();
        EXPECT_EQ(error->reason, row.reason) << row.text.constData();
        EXPECT_EQ(error->path, row.path) << row.text.constData();
        EXPECT_TRUE(error->toError().localizedDescription.contains(row.path));
    }
}

TEST(JSONCodingTest, RefusesWhatIsNotOneJSONValue) {
    const QByteArray brackets(100'000, '[');
    const QByteArray cases[] = {"",
                                " ",
                                "{",
                                "{}}",
                                "1,2",
                                "1]",
                                "[1],[2]",
                                "nul",
                                "{\"a\":}",
                                "\"\xff\"",
                                QByteArray("1\0", 2),
                                brackets,
                                brackets + QByteArray(brackets.size(), ']'),
                                "not found"};
    for (const QByteArray &text : cases) {
        const Decoded<QJsonValue> result = parseJSON(text);
        const DecodingError *const error = std::get_if<DecodingError>(&result);
        ASSERT_TRUE(error) << text.left(20).constData();
        EXPECT_EQ(error->reason, Reason::notJSON);
    }
    for (const char *const text : {" null ", "\"x\"", "-1.5e3", "[]", "\n{}"})
        EXPECT_TRUE(std::holds_alternative<QJsonValue>(parseJSON(text))) << text;
}

TEST(JSONCodingTest, WritesNumbersThatJSONLacksAsNull) {
    EXPECT_EQ(encodeJSON(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(encodeJSON(std::numeric_limits<quint64>::max()), "18446744073709551615");
}

} // namespace KestrioKit
