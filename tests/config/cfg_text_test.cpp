#include "config/cfg_text.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/run_time_error.h"

namespace {

std::vector<std::string> Fields(std::string_view content) {
  std::vector<std::string> fields;
  CfgReader reader(content, "F");
  while (!reader.AtEnd()) {
    const auto cell = reader.Cell("x");
    fields.push_back(cell ? "[" + *cell + "]" : "unset");
  }
  return fields;
}

TEST(CfgTextTest, FieldsAreTakenOneByOneWhateverEndsTheirLines) {
  const std::pair<std::string_view, std::vector<std::string>> cases[] = {
      {"1,2\n3\r4", {"[1]", "[2]", "[3]", "[4]"}},
      {"  1 , \"a, b\" ,\t2", {"[1]", "[a, b]", "[2]"}},
      {"\" a \", b c  ,3", {"[ a ]", "[b c]", "[3]"}},
      {"\"two\r\nlines\",1", {"[two\r\nlines]", "[1]"}},
      {"\"a\"b\"c\",2\r\n", {"[a]", "[2]"}},
      {",,\"\"\r\n", {"unset", "unset", "[]"}},
      {"1\r\n\r\n \n2\n\n", {"[1]", "[2]"}},
      {"\xEF\xBB\xBF\"1\"", {"[1]"}},
      {" \r\n", {}}};
  for (const auto& [content, fields] : cases) EXPECT_EQ(Fields(content), fields) << "'" << content << "'";
}

struct FaultCase {
  std::string_view content;
  char kind;  ///< of the field behind three texts: i number, b truth value, s text
  std::string description;
};

TEST(CfgTextTest, AFaultNamesFileLineFieldTableAndWhatStandsThere) {
  const FaultCase cases[] = {
      {"a,b\r\nc,12x", 'i', "13 Type mismatch: F, line 2, field 2 (T): found \"12x\""},
      {"a,b,c,,d", 'i', "13 Type mismatch: F, line 1, field 4 (T): found \"\""},
      {"a,b,c,1.5", 'i', "13 Type mismatch: F, line 1, field 4 (T): found \"1.5\""},
      {"\"a\n\",b,c\n2147483648", 'i', "6 Overflow: F, line 3, field 1 (T): found \"2147483648\""},
      {"a,b,c,43", 'i', "9 Subscript out of range: F, line 1, field 4 (T): found \"43\", possible are 0 to 42"},
      {"a,b,c,#TRUE#s", 'b', "13 Type mismatch: F, line 1, field 4 (T): found \"#TRUE#s\""},
      {"a,b,c,\x02\x7F\xFF and a long remainder", 'b',
       "13 Type mismatch: F, line 1, field 4 (T): found \"\\x02\\x7F\\xFF and a long remai\""},
      {"a,b,c\n", 's', "62 Input past end of file: F, line 2, field 1 (T): the file ends before it"},
      {"a,b,c\r\n  \"open\r\n1,2", 's',
       "62 Input past end of file: F, line 2, field 1 (T): the quote that opens it is not closed"},
  };
  for (const FaultCase& c : cases) {
    CfgReader reader(c.content, "F");
    for (int field = 0; field < 3; ++field) reader.Text("before");
    try {
      if (c.kind == 'i') reader.Integer("T", 0, 42);
      if (c.kind == 'b') reader.Truth("T");
      if (c.kind == 's') reader.Text("T");
      ADD_FAILURE() << "'" << c.content << "' was taken";
    } catch (const RunTimeError& fault) {
      EXPECT_EQ(std::to_string(fault.Number()) + " " + fault.Description(), c.description);
    }
  }
}

}  // namespace
