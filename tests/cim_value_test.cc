#include "hmz/cim_value.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "hmz/exception.h"

namespace {

using NKVXHMZ20::TCIMDateTime;
using NKVXHMZ20::TCIMReference;
using NKVXHMZ20::TCIMValue;
using NKVXHMZ20::THMZException;

constexpr auto kString = TCIMValue::kString;
constexpr auto kUint32 = TCIMValue::kUint32;

TCIMValue Array(TCIMValue::ECIMType type, const TCIMValue::Array& elements) {
  return {TCIMValue::TCIMType(type), elements.size(), elements};
}

TEST(DateTime, TakesExactlyTheFormAndGivesItBack) {
  for (const char* text :
       {"20040315140209.000000+000", "00000101000000.999999-720", "99991231235959.000001+999"}) {
    EXPECT_EQ(TCIMDateTime(text).ToString(), text);
  }
  for (const char* text :
       {"", "20040315140209.000000+00", "20040315140209.000000+0000", "2004031514020 .000000+000",
        "20040315140209,000000+000", "20040315140209.00000x+000", "20040315140209.000000*000",
        "20040015140209.000000+000", "20041315140209.000000+000", "20040300140209.000000+000",
        "20040332140209.000000+000", "20040315240209.000000+000", "20040315146009.000000+000",
        "20040315140260.000000+000", "2004-315140209.000000+000"}) {
    EXPECT_THROW(TCIMDateTime{text}, THMZException) << text;
  }
}

TEST(DateTime, KeepsImpossibleNumbersAsTheyAre) {
  EXPECT_EQ(TCIMDateTime().ToString(), "00000000000000.000000+000");
  EXPECT_EQ(TCIMDateTime(2005, 0, 0, 99, 60, 61, 7, -300).ToString(), "20050000996061.000007-300");
  EXPECT_EQ(TCIMDateTime(12345, 1, 100000, 1, 1, 1, 1234567, -32768).ToString(),
            "1234501100000010101.1234567-32768");
}

TEST(Value, ConvertsEveryKindToText) {
  const TCIMReference path(
      nullptr, "KVXSG_X", {{"Name", TCIMValue("a \"b\\")}, {"State", TCIMValue(std::uint16_t{3})}});
  const struct {
    TCIMValue value;
    TCIMValue::ECIMType type;
    const char* text;
  } cases[] = {
      {TCIMValue(), TCIMValue::kNull, ""},
      {TCIMValue("text"), kString, "text"},
      {TCIMValue(std::uint16_t{65535}), TCIMValue::kUint16, "65535"},
      {TCIMValue(std::uint32_t{4294967295}), kUint32, "4294967295"},
      {TCIMValue(TCIMDateTime(2005, 1, 5, 13, 2, 3, 0, 540)), TCIMValue::kDateTime,
       "20050105130203.000000+540"},
      {TCIMValue(path), TCIMValue::kReference, R"(KVXSG_X.Name="a \"b\\",State=3)"},
      {Array(kString, {TCIMValue(""), TCIMValue("b")}), kString, "{, b}"},
      {Array(kUint32, {}), kUint32, "{}"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.value.ToString(), c.text);
    EXPECT_EQ(c.value.GetType().GetCode(), c.type) << c.text;
  }
}

TEST(Value, TakesTheCountAndLooksAtTheTypes) {
  TCIMValue value("before");
  value.Set(TCIMValue::TCIMType(kString), 1, {TCIMValue("one"), TCIMValue("two")});
  EXPECT_EQ(value.ToString(), "{one}");
  EXPECT_THROW(value.Set(TCIMValue::TCIMType(kString), 3, {TCIMValue("one")}), THMZException);
  EXPECT_THROW(Array(kUint32, {TCIMValue("one")}), THMZException);
  EXPECT_THROW(Array(kString, {value}), THMZException);
  EXPECT_THROW(Array(TCIMValue::kUint16, {}), THMZException);
  EXPECT_EQ(value.ToString(), "{one}");  // a refused Set changes nothing
  EXPECT_THROW(TCIMValue("1").GetNumber(), THMZException);
  EXPECT_THROW(TCIMValue(std::uint32_t{1}).GetString(), THMZException);
  EXPECT_THROW(TCIMValue().GetCount(), THMZException);
  EXPECT_THROW(value.GetNumbers(), THMZException);
}

TEST(Value, PacksStringsOfAnyLengthAndContent) {
  NKVXHMZ20::TCIMStrings strings;
  std::vector<std::string> texts;
  for (const std::size_t length : {0U, 1U, 127U, 128U, 0U, 16383U, 16384U, 2097152U, 1U}) {
    texts.emplace_back(length, length % 2 == 0 ? '\0' : '\x80');
    const std::size_t before = strings.GetByteCount();
    strings.Add(texts.back());
    EXPECT_EQ(strings.GetByteCount() - before, NKVXHMZ20::TCIMStrings::PackedSize(length));
  }
  TCIMValue value;
  for (const std::size_t count : {9U, 4U, 0U}) {
    value.Set(TCIMValue::TCIMType(kString), count, strings);
    EXPECT_EQ(value.GetCount(), count);
    texts.resize(count);
    EXPECT_TRUE(std::equal(texts.begin(), texts.end(), value.GetStrings().begin()));
    EXPECT_EQ(std::distance(value.GetStrings().begin(), value.GetStrings().end()), count);
  }
  EXPECT_THROW(value.Set(TCIMValue::TCIMType(kString), 10, strings), THMZException);
  EXPECT_THROW(value.Set(TCIMValue::TCIMType(kUint32), 1, strings), THMZException);
}

}  // namespace
