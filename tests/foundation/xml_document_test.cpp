// SPDX-License-Identifier: MIT
#include "foundation/xml_document.h"

#include <gtest/gtest.h>

#include <random>

#include "support/memory_files.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

// The tree in one line: name="data" for a leaf, name{...} for a container.
std::string Shape(const XmlNode& node) {
  std::string shape;
  for (const XmlNode* child = node.FirstChild(); child != nullptr; child = child->NextSibling()) {
    shape += (shape.empty() ? "" : " ") + std::string(child->Name());
    shape += child->FirstChild() != nullptr ? "{" + Shape(*child) + "}"
                                            : "'" + std::string(child->Data()) + "'";
  }
  return shape;
}

// What is read, or why not and what was built up to the error, which stays; and how it is written.
TEST(XmlDocument, ReadsAndWritesTheDialect) {
  ExpectCases(TABLES "/xml.txt", [](const std::string& text) {
    XmlDocument document;
    const bool done = document.Parse(text);
    return (done ? "" : document.Message() + "\n") + Shape(document.Root()) + "\n" +
           document.Text();
  });
}

TEST(XmlWriter, ValuesSurviveTheRoundTrip) {
  std::string accents = "x", words;  // so that a character lies across the end of a line's room
  for (int i = 0; i < 2000; ++i) accents += "\xC3\xA9", words += "word  ";
  const std::string values[] = {"<tag>",
                                "\\",
                                "a\\\\ ",
                                "  a\n   b\\\n<",
                                "x\\\ny\\\\",
                                "a\rb",
                                "\xFF",
                                "say \"hi\"\n&amp;",
                                "a longer > text",
                                "end \\ x",
                                accents,
                                std::string(1890, 'x') + std::string(90, ' ') + "y",
                                std::string(4000, '<'),
                                words + "end"};
  for (std::string value : values) {
    const std::string folded = FoldForXml(value);
    for (const std::string& text : {value.substr(0, 500), folded}) {
      XmlDocument written, read;
      written.Root().AddChild("job").AddChild("a_rather_long_element_name", text);
      ASSERT_TRUE(read.Parse(written.Text())) << read.Message() << "\n" << written.Text();
      EXPECT_EQ(read.Root().Child("job")->ChildValue("a_rather_long_element_name"), text);
    }
    std::string unfolded = folded;
    for (std::string* text : {&unfolded, &value}) std::erase(*text, '\n');
    EXPECT_EQ(unfolded, value);
  }
  EXPECT_EQ(FoldForXml(accents).find("\n\xA9"), std::string::npos) << "no character is split";
}

TEST(XmlNode, ReadsNumbersAsScanfDoes) {
  const std::pair<const char*, int> cases[] = {{" -12", -12},
                                               {"+7", 7},
                                               {"12abc", 12},
                                               {"abc", 0},
                                               {"- 5", 0},
                                               {"", 0},
                                               {"2147483648", 2147483647},
                                               {"-2147483648", INT32_MIN},
                                               {"-99999999999999999999999999", INT32_MIN}};
  XmlDocument document;
  for (const auto& [text, value] : cases) {
    document.Clear();
    document.Root().AddChild("n", text);
    EXPECT_EQ(document.Root().ChildNumber("n"), value) << text;
  }
}

TEST(XmlDocument, SavesAndLoadsFiles) {
  testing::MemoryFiles files;
  XmlDocument document;
  EXPECT_TRUE(document.Load(files, "/work/none.xml").Missing());
  EXPECT_EQ(document.Message(), "Can not open /work/none.xml");
  files.Put("/work/a.xml", "<a>");
  EXPECT_EQ(document.Load(files, "/work/a.xml").code, FileCode::Damaged);
  EXPECT_FALSE(document.Save(files, "/work/no/such.xml"));
  EXPECT_EQ(document.Message(), "Can not create /work/no/such.xml");
  document.Root().AddChild("b", "1");
  ASSERT_TRUE(document.Save(files, "/work/a.xml"));
  for (int i = 0; i < 2; ++i) ASSERT_TRUE(document.Load(files, "/work/a.xml"));
  EXPECT_EQ(document.Message() + Shape(document.Root()), "b'1'") << "the tree is replaced";
}

TEST(XmlDocument, DepthIsNoMatterOfTheStack) {
  constexpr int kDepth = 1'000'000;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<a>\n";
  XmlDocument document;
  EXPECT_FALSE(document.Parse(text));
  for (int i = 0; i < kDepth; ++i) text += "</a>\n";
  ASSERT_TRUE(document.Parse(text));
  EXPECT_EQ(document.Text(), "") << "its indentation alone would take terabytes";
}

}  // namespace
}  // namespace quillmere
