// Interned names, text conversion, case folding, type names and paths.

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <thread>
#include <vector>

#include "platform/ast/string_id.hpp"
#include "platform/filesystem/paths.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/utils/type_names.hpp"
#include "platform/ast/ast.hpp"

namespace {

using ca::astapi::StringId;

TEST(StringId, EqualTextIsEqualIdAndTheWordIsTheHash) {
  StringId a(u"plot"), b(std::u16string(u"plo") + u"t"), c(u"Plot");
  EXPECT_EQ(a, b);
  EXPECT_EQ(a.hash(), b.hash());
  EXPECT_EQ(std::hash<StringId>{}(a), a.hash());
  EXPECT_FALSE(a == c);
  EXPECT_EQ(&a.getString(), &b.getString());
  EXPECT_EQ(a.getString(), u"plot");
  EXPECT_EQ(sizeof(StringId), sizeof(void*));
  EXPECT_EQ(StringId(), StringId(u""));
  EXPECT_EQ(StringId::fromUtf8("plot"), a);
}

TEST(StringId, OrderIsByTextAndStrict) {
  StringId a(u"alpha"), b(u"beta");
  EXPECT_TRUE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_FALSE(a < a);
  std::set<StringId> ordered{StringId(u"c"), StringId(u"a"), StringId(u"b"), StringId(u"a")};
  std::vector<std::u16string> texts;
  for (StringId id : ordered) texts.push_back(id.getString());
  EXPECT_EQ(texts, (std::vector<std::u16string>{u"a", u"b", u"c"}));
}

TEST(StringId, StreamsAsUtf8) {
  std::ostringstream out;
  out << StringId(u"gr\u00fc\u00dfe");
  EXPECT_EQ(out.str(), "gr\xc3\xbc\xc3\x9f" "e");
}

TEST(StringId, ConcurrentInterningAgreesOnOneIdPerText) {
  constexpr int threads = 4, names = 2000;
  std::vector<std::vector<StringId>> seen(threads);
  std::vector<std::thread> workers;
  for (int t = 0; t < threads; ++t) {
    workers.emplace_back([t, &seen] {
      for (int i = 0; i < names; ++i) {
        seen[t].push_back(StringId::fromUtf8("concurrent_" + std::to_string((i * (t + 1)) % names)));
      }
    });
  }
  for (auto& worker : workers) worker.join();
  for (int t = 0; t < threads; ++t) {
    for (int i = 0; i < names; ++i) {
      EXPECT_EQ(seen[t][i], StringId::fromUtf8("concurrent_" + std::to_string((i * (t + 1)) % names)));
    }
  }
}

TEST(I18n, ConvertsBothWaysAndReplacesInvalidSequences) {
  EXPECT_EQ(fl::i18n::to_ustring("x = 1"), u"x = 1");
  EXPECT_EQ(fl::i18n::to_ustring("\xe2\x82\xac"), u"\u20ac");
  EXPECT_EQ(fl::i18n::to_ustring("a\xff" "b"), u"a\ufffdb");
  EXPECT_EQ(fl::i18n::to_utf8(u"\u20ac"), "\xe2\x82\xac");
  EXPECT_EQ(fl::i18n::to_utf8(std::u16string(1, char16_t(0xd800))), "\xef\xbf\xbd");
}

TEST(I18n, CaseInsensitiveComparisonFoldsFullUnicode) {
  auto compare = [](std::u16string_view a, std::u16string_view b) {
    return fl::i18n::detail::compare(a.data(), a.size(), b.data(), b.size(), fl::i18n::case_insensitive{});
  };
  EXPECT_EQ(compare(u"LineWidth", u"linewidth"), 0);
  EXPECT_EQ(compare(u"Stra\u00dfe", u"STRASSE"), 0);
  EXPECT_EQ(compare(u"\u00c9t\u00e9", u"\u00e9T\u00c9"), 0);
  EXPECT_LT(compare(u"abc", u"ABD"), 0);
  EXPECT_GT(compare(u"abd", u"ABC"), 0);
  EXPECT_NE(compare(u"ab", u"abc"), 0);
}

TEST(I18n, TextStreamWritesValuesUnderTheClassicLocale) {
  fl::i18n::TextStream s;
  s << u"isNthItemInList " << 1234567 << u" " << 2.5 << u" " << StringId(u"\u00fc");
  EXPECT_EQ(s.str(), u"isNthItemInList 1234567 2.5 \u00fc");
}

TEST(TypeNames, PrettyNamesDropNamespacesAndTheFlavour) {
  EXPECT_EQ(ca::utils::prettifyTypeName(u"lf::astapi::Identifier<ca::astapi::CA>"), u"Identifier");
  EXPECT_EQ(ca::utils::prettifyTypeName(u"std::vector<ca::Symbol const*>"), u"vector<Symbol const*>");
  EXPECT_EQ(ca::utils::prettifyTypeName(u"int"), u"int");
  // A member pointer keeps the class it points into.
  EXPECT_EQ(ca::utils::prettifyTypeName(u"lf::astapi::Field<ca::astapi::CA> const& "
                                        u"(lf::astapi::DotOperation<ca::astapi::CA>::*)() const"),
            u"Field const& (DotOperation::*)() const");
  EXPECT_EQ(ca::utils::prettyTypeName<ca::ast::Identifier const&>(), u"Identifier");
  EXPECT_EQ(ca::utils::prettyTypeName<lf::astapi::NodeKind>(), u"NodeKind");
}

TEST(Paths, FilenameParentAndNativeForm) {
  using namespace fl::filesystem::detail;
  EXPECT_EQ(extract_filename(u"a/@Cls/f.m"), u"f.m");
  EXPECT_EQ(extract_filename(u"f.m"), u"f.m");
  EXPECT_EQ(extract_filename(u"a/b/"), u"");
  EXPECT_EQ(extract_parent_path(u"a/@Cls/f.m"), u"a/@Cls");
  EXPECT_EQ(extract_parent_path(u"f.m"), u"");
  EXPECT_EQ(extract_parent_path(u"/f.m"), u"/");
  EXPECT_EQ(make_native_form(u"a\\b//c.m", 1), u"a/b/c.m");
  EXPECT_EQ(make_native_form(u"a\\b", 0), u"a\\b");
}

}  // namespace
