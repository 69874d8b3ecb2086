// Named printers, end to end.

#include <filesystem>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

void readAll(Client& client) {
    client.read();
}

class NamedPrinters : public ToolTest {
  protected:
    void add(const std::string& name, const std::string& address,
             const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments{"printers", "add", name, address};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.err, "");
        EXPECT_EQ(ran.out, "");
    }
    // Runs it with TAVIO_PRINTER being `name`.
    Ran tavioWith(const std::string& name, const std::vector<std::string>& arguments) const {
        Start start;
        start.environment = {"TAVIO_PRINTER=" + name};
        return Running(folder.path(), arguments, start).finish();
    }
};

TEST_F(NamedPrinters, AreListedAddedAndRemoved) {
    EXPECT_EQ(tavio({"printers", "list"}).out, "");
    add("hall", "tcp://192.0.2.7",
        {"--stock", "cinema", "--reply", "ready:exact:OK", "--reply", "out-of-paper:contains:a:b"});
    add("door", "tty:/dev/ttyS0?baud=9600",
        {"--stock", "3.5x2.25", "--orientation", "portrait", "--resolution", "600", "--path", ""});
    EXPECT_EQ(tavio({"printers", "default", "door"}).status, 0);
    EXPECT_EQ(tavio({"printers", "list"}).out,
              "door  tty:/dev/ttyS0?baud=9600  (default)\n"
              "hall  tcp://192.0.2.7\n");
    EXPECT_EQ(
        tavio({"printers", "list", "--json"}).out,
        R"({"command":"printers list","status":0,"outcome":"told","problems":[],"warnings":[],)"
        R"("remarks":[],"printers":[{"name":"door","address":"tty:/dev/ttyS0?baud=9600",)"
        R"("isDefault":true,"stock":{"width":3.5,"height":2.25},"resolution":600,)"
        R"("orientation":"portrait","path":"","replies":[]},{"name":"hall",)"
        R"("address":"tcp://192.0.2.7","isDefault":false,"stock":1,"replies":[)"
        R"({"state":"ready","match":"exact","text":"OK"},)"
        R"({"state":"out-of-paper","match":"contains","text":"a:b"}]}]})"
        "\n");
    EXPECT_NE(tavio({"printers", "remove", "door", "--json"}).out.find(R"("outcome":"changed")"),
              std::string::npos);
    EXPECT_EQ(tavio({"printers", "list"}).out, "hall  tcp://192.0.2.7\n");
}

TEST_F(NamedPrinters, AreRefusedIfTheyCannotBe) {
    add("hall", "tcp://192.0.2.7");
    EXPECT_EQ(tavio({"printers", "add", "hall", "tcp://192.0.2.8"}).err,
              "tavio: there is a printer of the name \"hall\" already\n");
    EXPECT_EQ(tavio({"printers", "remove", "door", "--json"}).status, 1);
    EXPECT_EQ(tavio({"printers", "default", "door"}).status, 1);
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"a b", "tcp://x"},
                                                  {"", "tcp://x"},
                                                  {"a", "x.png"},
                                                  {"a", ""},
                                                  {"a", "tcp://x", "--reply", "OK"},
                                                  {"a", "tcp://x", "--reply", "fine:exact:OK"},
                                                  {"a", "tcp://x", "--reply", "ready:exactly:OK"},
                                                  {"a", "tcp://x", "--stock", "0x2"},
                                                  {"a", "tcp://x", "--stock", "28x2"},
                                                  {"a", "tcp://x", "--scaled"},
                                                  {"a"}}) {
        std::vector<std::string> arguments{"printers", "add"};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        EXPECT_EQ(tavio(arguments).status, 2) << testing::PrintToString(wrong);
    }
}

TEST_F(NamedPrinters, ArePrintedOn) {
    SocketPrinter hall(readAll);
    add("hall", hall.target());
    const Ran ran = tavio({"cut", "--printer", "hall"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "sent, unconfirmed: 3 bytes\n");
    EXPECT_EQ(hall.received(), "<p>");
}

TEST_F(NamedPrinters, AreMeantByTheEnvironmentAndByDefault) {
    SocketPrinter hall(readAll);
    SocketPrinter door(readAll);
    add("hall", hall.target());
    add("door", door.target());
    EXPECT_EQ(tavio({"cut"}).out, "") << "a name alone means nothing";
    EXPECT_TRUE(std::filesystem::remove(at("ticket.png")));
    tavio({"printers", "default", "hall"});
    EXPECT_EQ(tavio({"send", "by default"}).status, 0);
    EXPECT_EQ(tavioWith("door", {"send", "by the environment"}).status, 0);
    EXPECT_EQ(hall.received(), "by default");
    EXPECT_EQ(door.received(), "by the environment");
    EXPECT_EQ(folder.names(), std::set<std::string>{"config"}) << "no preview";
}

TEST_F(NamedPrinters, GiveWayToATarget) {
    add("hall", "tcp://127.0.0.1:1", {"--stock", "cinema"});
    tavio({"printers", "default", "hall"});
    writeFile(at("black.bmp"), greyBmp(32, 32));
    const std::vector<std::string> print{"print", "black.bmp", "--scaled", "--to", "file:job.bin"};
    const std::string plain = bytesOf({"print", "black.bmp", "--scaled"});
    std::vector<std::string> named = print;
    named.insert(named.end(), {"--printer", "hall"});
    EXPECT_EQ(tavio(named).status, 0);
    EXPECT_TRUE(readFile(at("job.bin")) ==
                bytesOf({"print", "black.bmp", "--scaled", "--stock", "cinema"}));
    EXPECT_EQ(tavioWith("nobody", print).status, 0) << "no name is looked up";
    EXPECT_TRUE(readFile(at("job.bin")) == plain) << "nor are the default's settings";
}

TEST_F(NamedPrinters, GiveTheirSettingsUnlessTheCommandLineHasOthers) {
    writeFile(at("black.bmp"), greyBmp(32, 32));
    const std::vector<std::string> settings{"--stock",       "cinema",   "--resolution", "200",
                                            "--orientation", "portrait", "--path",       "<P2>"};
    add("hall", "tcp://127.0.0.1:1", settings);
    auto bytes = [this](std::vector<std::string> more) {
        more.insert(more.begin(), {"print", "black.bmp"});
        return bytesOf(more);
    };
    std::vector<std::string> all = settings;
    EXPECT_TRUE(bytes({"--printer", "hall"}) == bytes(all));
    all[3] = "600";
    EXPECT_TRUE(bytes({"--printer", "hall", "--resolution", "600"}) == bytes(all));
}

TEST_F(NamedPrinters, KnowWhatTheirRepliesMean) {
    const std::vector<std::string> replies{"--reply", "ready:exact:OK", "--reply",
                                           "out-of-paper:contains:PAPER"};
    for (const auto& [reply, state, status] :
         {std::tuple{"OK\r\n", "ready", 0}, {"NO PAPER", "out-of-paper", 1}, {"?", "unknown", 1}}) {
        SCOPED_TRACE(reply);
        SocketPrinter asked([text = std::string(reply)](Client& client) {
            client.send(text);
            client.read();
        });
        const std::string name = std::string("asked-") + state;
        add(name, asked.target(), replies);
        const Ran told = tavio({"status", "--printer", name});
        EXPECT_EQ(told.status, 0);
        EXPECT_NE(told.out.find(std::string("\nstate: ") + state + "\n"), std::string::npos)
            << told.out;

        SocketPrinter printer([text = std::string(reply)](Client& client) {
            client.send(text);
            client.read();
        });
        add(std::string("ready-") + state, printer.target(), replies);
        const Ran ran = tavio({"cut", "--ready", "--printer", std::string("ready-") + state,
                               "--timeout", "5", "--json"});
        EXPECT_EQ(ran.status, status) << ran.out;
        EXPECT_EQ(printer.received(), status == 0 ? "<p>" : "");
        EXPECT_NE(ran.out.find(std::string(R"("state":")") + state), std::string::npos) << ran.out;
    }
}

TEST_F(NamedPrinters, ThatAreNotThereAreRefused) {
    expectRefusal({"cut", "--printer", "hall"},
                  "tavio: there is no printer of the name \"hall\" (tavio printers list)");
    EXPECT_EQ(tavioWith("hall", {"cut"}).status, 1);
    EXPECT_EQ(tavioWith("", {"cut"}).status, 0) << "an empty name is none";
}

TEST_F(NamedPrinters, InAWrongFileAreToldByLineAndColumn) {
    std::filesystem::create_directories(at("config/tavio"));
    const std::string path = at("config/tavio/printers.toml");
    writeFile(path, "[printers.hall]\naddress = 7\n");
    const Ran ran = tavio({"cut", "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_TRUE(ran.err.starts_with("tavio: " + path + ":2:11: ")) << ran.err;
    EXPECT_EQ(tavio({"cut", "--to", "file:job.bin"}).status, 0) << "it is not read then";
}

}  // namespace
}  // namespace tavio::test
