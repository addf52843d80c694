#include <QProcess>

#include "tests/platform/dbus/bus_test.h"

namespace {

/// `tarvex-client` as an operator runs it, against the running system.
class ClientProgramTest : public BusTest {
 protected:
  struct Result {
    int status;
    std::string output;
  };

  /// Runs the program while the channels are visited.
  Result Run(const QStringList& arguments) {
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(TARVEX_CLIENT, arguments);
    EXPECT_TRUE(Until([&] {
      plant_.Tick();
      return program.state() == QProcess::NotRunning;
    }));
    return {program.exitCode(), program.readAll().toStdString()};
  }
};

TEST_F(ClientProgramTest, SendTellsByItsExitStatusWhatBecameOfTheCommand) {
  StartOnBus();
  plant_.tables.ProtoCmdText[2][1][kProtocol] = "4";  // not enabled
  struct Case {
    const char* arguments;
    int status;
    const char* words;
  };
  for (const Case& command :
       {Case{"send 1 3 12.5", 0, "Command 3 was sent to the device."},
        Case{"send 1 3", 0, "Command 3 was sent to the device."},
        Case{"send 1 5", 1, "Refused: the protocol of channel 1 has no command 5, or its line is gone."},
        Case{"send 1 4 --wait 0.1", 2, "No answer: command 4 was not taken up in time"},
        Case{"send 1 31768", 64, "CODE is"}, Case{"send 1 3 heavy", 64, "PARM is"}, Case{"send 33 3", 64, "CHANNEL is"},
        Case{"send 1 3 --wait x", 64, "need a number"}, Case{"--help", 0, "usage:"}, Case{"", 64, "usage:"}}) {
    const Result result = Run(QString(command.arguments).split(' ', Qt::SkipEmptyParts));
    EXPECT_EQ(result.status, command.status) << command.arguments << ": " << result.output;
    EXPECT_NE(result.output.find(command.words), std::string::npos) << result.output;
  }
  EXPECT_EQ(plant_.ports.port[0].sent, (std::vector<std::string>{"T12.5X", "T0X"}));
}

TEST_F(ClientProgramTest, ACommandThatWasGivenUpDoesNotActLater) {
  StartOnBus();
  plant_.tables.ProtoCmdEnabled[0][kProtocol] = False;
  EXPECT_EQ(Run({"send", "1", "3", "--wait", "0.1"}).status, 2);
  plant_.tables.ProtoCmdEnabled[0][kProtocol] = True;
  plant_.Tick();
  EXPECT_TRUE(plant_.ports.port[0].sent.empty());
}

TEST_F(ClientProgramTest, WithoutAManagerOrABusItSaysWhatToDo) {
  EXPECT_EQ(Run({"show", "1"}).status, 3);
  daemon_.Start();
  const Result result = Run({"send", "1", "3"});
  EXPECT_EQ(result.status, 3);
  EXPECT_NE(result.output.find("Is it running, and on this session bus?"), std::string::npos) << result.output;
}

}  // namespace
