#include "config/opc_servers_file.h"

#include "tests/config/config_plant.h"

namespace {

class OpcServersFileTest : public testing::Test, public ConfigPlant {
 public:
  /// All of a server in one text, or the fault.
  std::string Of(const std::string& server, const std::string& node = {}) {
    try {
      const OpcServer read = ReadOpcServer(engine.tables, files, server, node);
      return read.endpoint + " " + read.mode + " " + read.policy + " " + read.user + ":" + read.password;
    } catch (const RunTimeError& fault) {
      return std::to_string(fault.Number()) + " " + fault.Description();
    }
  }
};

TEST_F(OpcServersFileTest, ANameIsLookedUpElseItIsTheEndpointElseItMeansTheUsualPort) {
  File("Tarvex-OPC.Cfg") =
      "plant,opc.tcp://a:1/x,signandencrypt,BASIC256SHA256,\"me, too\",plant.pw\r\n\r\n"
      " plant ,opc.tcp://later:1,None,None,,\n\"open\",\"opc.tcp://b:2\",None,none";
  File("plant.pw") = "a secret \r\nand a note";
  const struct {
    const char *server, *node, *told;
  } cases[] = {
      {" plant", "ignored", "opc.tcp://a:1/x SignAndEncrypt Basic256Sha256 me, too:a secret "},
      {"open", "", "opc.tcp://b:2 None None :"},
      {"opc.tcp://c:3", "", "opc.tcp://c:3 None None :"},
      {"Plant", "", "opc.tcp://localhost:4840 None None :"},
      {"", "pc9", "opc.tcp://pc9:4840 None None :"},
      {"http://c:3", "", "13 OPC server \"http://c:3\": an endpoint begins with opc.tcp://"},
  };
  for (const auto& c : cases)
    EXPECT_TRUE(Of(c.server, c.node).find(c.told) != std::string::npos) << Of(c.server, c.node);
}

TEST_F(OpcServersFileTest, WhatCannotBeReadIsRefusedByLineAndFieldAndNotGuessed) {
  const struct {
    const char *line, *told;
  } cases[] = {
      {"plant,a:1,None,None,,", "field 2 (endpoint)"},
      {"plant,opc.tcp://a:1,Sing,None,,", "possible are None, Sign, SignAndEncrypt"},
      {"plant,opc.tcp://a:1,Sign,None,,", "mode and policy are both None, or neither is"},
      {"plant,opc.tcp://a:1,None,Basic256Sha256,,", "mode and policy are both None, or neither is"},
      {"plant,opc.tcp://a:1,None,None,me,gone.pw", "53 Password file missing or empty: /plant/gone.pw"},
      {"plant,opc.tcp://a:1,None,None,me", "53 Password file missing or empty: /plant"},
      {"plant,opc.tcp://a:1", "the file ends before it"},
      {"\"plant,opc.tcp://a:1,None,None,,", "the quote that opens it is not closed"},
  };
  for (const auto& c : cases) {
    File("Tarvex-OPC.Cfg") = "other,opc.tcp://b:2,None,None,,\n" + std::string(c.line) + "\n";
    EXPECT_NE(Of("plant").find(c.told), std::string::npos) << Of("plant");
  }
}

}  // namespace
