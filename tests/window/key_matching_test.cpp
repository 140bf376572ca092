// Keys for captions.
#include "window/key_matching.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace window {
namespace {

struct KeyMatching : testing::Test {
  QWidget stack;
  QWidget first_page;
  QWidget second_page;

  static KeyWish wish(const char* keys, const char* has = "") {
    KeyWish made;
    for (const char* key = keys; *key; ++key) made.keys.emplace_back(*key);
    if (*has) made.key = QChar(*has);
    made.fixed = !made.key.isNull();
    return made;
  }
  static KeyWish movable(KeyWish wish) {
    wish.fixed = false;
    return wish;
  }
  KeyWish on(QWidget& page, const char* keys) {
    KeyWish made = wish(keys);
    made.pages[&stack] = &page;
    return made;
  }
  static std::string matched(const std::vector<KeyWish>& wishes) {
    std::string keys;
    for (const QChar key : match_keys(wishes)) keys += key.isNull() ? '-' : key.toLatin1();
    return keys;
  }
};

TEST_F(KeyMatching, TheFirstKeyThatIsFreeIsTaken) {
  EXPECT_EQ(matched({wish("AB"), wish("CA"), wish("AD")}), "ACD");
}

TEST_F(KeyMatching, OneThatFindsItsKeysTakenMovesOthers) {
  EXPECT_EQ(matched({wish("AB"), wish("BC"), wish("A")}), "BCA");
}

TEST_F(KeyMatching, AKeyThatIsThereStays) {
  EXPECT_EQ(matched({wish("AB", "A"), wish("A")}), "A-");
  EXPECT_EQ(matched({wish("A"), wish("XA", "A")}), "-A");
}

TEST_F(KeyMatching, AKeyThatMayMoveDoesSoForOneThatFindsNoneElse) {
  const KeyWish has_b = movable(wish("ABC", "B"));
  EXPECT_EQ(matched({has_b, wish("AB")}), "BA");
  EXPECT_EQ(matched({has_b, wish("B")}), "AB");
  EXPECT_EQ(matched({has_b, movable(wish("A", "A")), wish("B")}), "CAB");
}

TEST_F(KeyMatching, PagesShareKeysAndWhatIsAlwaysInSightHasItsOwn) {
  EXPECT_EQ(matched({on(first_page, "A"), on(second_page, "A")}), "AA");
  EXPECT_EQ(matched({on(first_page, "A"), on(first_page, "A")}), "A-");
  EXPECT_EQ(matched({on(first_page, "AB"), on(second_page, "AC"), wish("A")}), "BCA");
  EXPECT_EQ(matched({wish("A"), on(first_page, "A")}), "A-");
}

TEST_F(KeyMatching, WhatPagesShareMovesTogether) {
  EXPECT_EQ(matched({on(first_page, "AB"), on(second_page, "AB"), wish("A")}), "BBA");
}

TEST_F(KeyMatching, AsManyAsPossibleHaveAKey) {
  EXPECT_EQ(matched({wish("A"), wish("A"), wish("AB"), wish("")}), "A-B-");
}

}  // namespace
}  // namespace window
