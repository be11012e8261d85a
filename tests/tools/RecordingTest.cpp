#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/RunPrb.h"
#include "tools/recording/RecordingReader.h"
#include "tools/recording/RecordingWriter.h"

namespace fyn::productionrules::testing {
namespace {

/** Reads all events and writes them again. */
std::string readAndWrite(const std::string& text) {
  std::istringstream in(text);
  std::ostringstream out;
  RecordingReader reader(in, "in");
  RecordingWriter writer(out);
  RecordingEvent event;
  while (reader.next(event)) {
    writer.write(event);
  }
  return out.str();
}

std::string faultOf(const std::string& text) {
  return usageFaultOf([&text] { readAndWrite(text); });
}

TEST(Recording, EveryKindOfLineComesBackAsItWas) {
  const std::string text =
      R"({"t":0,"recorded":{"by":"x","at":[1,{}]}})"
      "\n"
      R"({"t":0,"truth":[]})"
      "\n"
      R"({"t":0,"truth":[{"id":1,"fynCamId":0,"bbox":{"left":-1,"top":2,"right":3,"bottom":4},"speaks":true},)"
      R"({"id":1,"fynCamId":2,"bbox":{"left":0,"top":0,"right":0,"bottom":0},"speaks":false}]})"
      "\n"
      "{\"t\":0,\"property\":{\"b\":\"1\",\"a\":\"\"}}\n"
      "{\"t\":0,\"config\":{}}\n"
      "{\"t\":0,\"provider\":\"up\"}\n"
      "{\"t\":5,\"topic\":\"/ICDOut\",\"payload\":{\"z\":[1,-2,3.5,null,true,\"\\\"\\n\"],\"a\":{}}}\n"
      "{\"t\":5,\"topic\":\"/ctl\",\"payload\":\"config-change\"}\n"
      "{\"t\":6,\"topic\":\"/cameras\",\"payload\":[]}\n"
      "{\"t\":7,\"topic\":\"/ICDOut\",\"payload\":\"{not json\"}\n"
      "{\"t\":8,\"provider\":\"down\"}\n"
      "{\"t\":31536000000,\"provider\":\"fail\"}\n"
      "{\"t\":31536000000}\n";
  EXPECT_EQ(readAndWrite(text), text);
}

TEST(Recording, APayloadStandsForItsCompactText) {
  const std::vector<std::tuple<const char*, const char*, const char*>> cases{
      {R"({"t":0,"topic":"/a","payload":{ "b" : 1 , "a" : [ 1 , { } ] }})", "/a", R"({"b":1,"a":[1,{}]})"},
      {R"({"payload":[1],"topic":"/a","t":0})", "/a", "[1]"},
      {R"({"t":0,"topic":"/a","payload":"{ \"b\" : 1 }"})", "/a", R"({ "b" : 1 })"},
      {R"({"t":0,"topic":"/a","payload":""})", "/a", ""},
      {"{\"t\":0,\"topic\":\"/\",\"payload\":[\"\\u00e4\\u0041\\u0001\"]}\r", "/", "[\"\u00e4A\\u0001\"]"},
      {R"({"t":0,"topic":"/a","payload":[18446744073709551615,-9223372036854775808,1e2,0.1]})", "/a",
       "[18446744073709551615,-9223372036854775808,100.0,0.1]"},
  };
  for (const auto& [line, topic, payload] : cases) {
    std::istringstream in(std::string("\n  \r\n") + line);
    RecordingReader reader(in, "in");
    RecordingEvent event;
    ASSERT_TRUE(reader.next(event)) << line;
    EXPECT_EQ(reader.line(), 3U);
    const auto* const message = std::get_if<BusMessage>(&event.what);
    ASSERT_NE(message, nullptr) << line;
    EXPECT_EQ(message->topic, topic);
    EXPECT_EQ(message->payload, payload);
    EXPECT_FALSE(reader.next(event));
  }
}

TEST(Recording, AMalformedLineIsNamedWithItsFault) {
  const std::vector<std::pair<const char*, const char*>> cases{
      {"{", "not valid JSON at column 2"},
      {"{\"t\":0} x", "not valid JSON at column 9"},
      {"{\"t\":1e999}", "not valid JSON at column 10"},
      {"[]", "a line must be a JSON object, not an array"},
      {"null", "a line must be a JSON object, not null"},
      {"{}", "\"t\" is missing"},
      {R"({"t":1.5})", "\"t\" must be an integer, not 1.5"},
      {R"({"t":"1"})", "\"t\" must be an integer, not a text"},
      {R"({"t":-1})", "\"t\" is negative"},
      {R"({"t":18446744073709551615})",
       "\"t\" is later than a year after the start, 31536000000 ms; is it the time of day?"},
      {R"({"t":31536000001})",
       "\"t\" is later than a year after the start, 31536000000 ms; is it the time of day?"},
      {R"({"t":1,"t":1})", "key \"t\" stands twice"},
      {R"({"t":1,"when":1})", "unknown key \"when\""},
      {R"({"t":1,"topic":"/a"})", "\"payload\" is missing"},
      {R"({"t":1,"payload":"x"})", "\"topic\" is missing"},
      {R"({"t":1,"topic":"a","payload":"x"})", "a topic must begin with \"/\""},
      {R"({"t":1,"topic":7,"payload":"x"})", "\"topic\" must be a text, not a number"},
      {R"({"t":1,"topic":"/a","payload":7})",
       "\"payload\" must be an object, an array or a text, not a number"},
      {R"({"t":1,"topic":"/a","payload":null})",
       "\"payload\" must be an object, an array or a text, not null"},
      {R"({"t":1,"topic":"/a","payload":{"a":}})", "not valid JSON at column 36"},
      {R"({"t":1,"property":{"a":1}})", "the value of \"a\" must be a text, not a number"},
      {R"({"t":1,"property":["a"]})", "\"property\" must be an object, not an array"},
      {R"({"t":1,"config":"a=1"})", "\"config\" must be an object, not a text"},
      {R"({"t":1,"provider":"gone"})",
       "\"provider\" must be \"up\", \"announced\", \"down\" or \"fail\", not \"gone\""},
      {R"({"t":1,"provider":true})", "\"provider\" must be a text, not true"},
      {R"({"t":1,"provider":"up","config":{}})", "two kinds of event in one line"},
      {R"({"t":1,"truth":[],"recorded":{}})", "two kinds of event in one line"},
      {R"({"t":1,"recorded":{}})", "\"recorded\" stands only at the beginning"},
      {R"({"t":1,"recorded":[]})", "\"recorded\" must be an object, not an array"},
      {R"({"t":1,"truth":{}})", "\"truth\" must be an array, not an object"},
      {R"({"t":1,"truth":[[]]})", "truth: an entry must be an object, not an array"},
      {R"({"t":1,"truth":[null]})", "truth: an entry must be an object, not null"},
      {R"({"t":1,"truth":[{"name":1}]})", "truth: unknown key \"name\""},
      {R"({"t":1,"truth":[{"id":1,"id":1}]})", "truth: key \"id\" stands twice"},
      {R"({"t":1,"truth":[{"id":1.5}]})", "truth: \"id\" must be an integer, not 1.5"},
      {R"({"t":1,"truth":[{"id":-1}]})", "truth: \"id\" is out of range"},
      {R"({"t":1,"truth":[{"fynCamId":18446744073709551615}]})", "truth: \"fynCamId\" is out of range"},
      {R"({"t":1,"truth":[{"fynCamId":{}}]})", "truth: \"fynCamId\" must be an integer, not an object"},
      {R"({"t":1,"truth":[{"speaks":1}]})", "truth: \"speaks\" must be true or false, not a number"},
      {R"({"t":1,"truth":[{"id":1,"speaks":true,"fynCamId":0}]})", "truth: \"bbox\" is missing"},
      {R"({"t":1,"truth":[{"bbox":[]}]})", "truth: \"bbox\" must be an object, not an array"},
      {R"({"t":1,"truth":[{"bbox":{"left":true}}]})", "truth: \"left\" must be an integer, not true"},
      {R"({"t":1,"truth":[{"bbox":{"left":-2147483649}}]})", "truth: \"left\" is out of range"},
      {R"({"t":1,"truth":[{"bbox":{"left":1,"top":1,"bottom":1}}]})", "truth: \"right\" is missing"},
      {R"({"t":1,"truth":[{"bbox":{"id":1}}]})", "truth: unknown key \"id\""},
      {R"({"t":1,"truth":[{"id":7,"fynCamId":0,"bbox":{"left":0,"top":0,"right":0,"bottom":0},"speaks":true},)"
       R"({"speaks":true,"bbox":{"left":1,"top":0,"right":0,"bottom":0},"fynCamId":0,"id":7}]})",
       "truth: person 7 stands twice in camera 0"},
      {R"({"t":1,"topic":"/a","payload":{},"provider":"up"})", "two kinds of event in one line"},
  };
  for (const auto& [line, fault] : cases) {
    EXPECT_EQ(faultOf(std::string("{\"t\":0}\n\n") + line + "\n"), std::string("in:3: ") + fault);
  }
}

TEST(Recording, ALineThatIsCutOffIsCalledSo) {
  EXPECT_EQ(
      faultOf("{\"t\":0}\n{\"t\""),
      "in:2: not valid JSON at column 5; the recording ends in the middle of this line, as one that was cut "
      "off");
  EXPECT_EQ(faultOf("{\"t\":0}\n{\"t\":1}"), "none");
}

TEST(Recording, TimeMayStandStillButNotGoBack) {
  EXPECT_EQ(faultOf("{\"t\":7}\n{\"t\":7}\n{\"t\":8}\n"), "none");
  EXPECT_EQ(faultOf("{\"t\":7}\n{\"t\":6}\n"), "in:2: \"t\" goes back from 7 to 6");
}

TEST(Recording, DepthAndSizeOfAPayloadDoNotMatter) {
  constexpr std::size_t kDepth = 500000;
  const std::string deep = std::string(kDepth, '[') + std::string(kDepth, ']');
  const std::string line = "{\"t\":0,\"topic\":\"/ICDOut\",\"payload\":" + deep + "}\n";
  EXPECT_EQ(readAndWrite(line), line);
}

TEST(Recording, AWrittenPayloadIsJsonOnlyWhenItsTextIsAnObjectOrArray) {
  const std::vector<std::pair<const char*, const char*>> cases{
      {" {\"b\" : 1,\n\"a\":2} ", R"({"b":1,"a":2})"},
      {"[1,2]", "[1,2]"},
      {"7", "\"7\""},
      {"\"x\"", R"("\"x\"")"},
      {"null", "\"null\""},
      {"", "\"\""},
      {"{", "\"{\""},
      {"[1] 2", "\"[1] 2\""},
      {"a\tb", "\"a\\tb\""},
      {"\xff", "\"\xef\xbf\xbd\""},
  };
  for (const auto& [text, json] : cases) {
    EXPECT_EQ(recordingLine({0, BusMessage{"/a", text}}),
              std::string(R"({"t":0,"topic":"/a","payload":)") + json + '}');
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
