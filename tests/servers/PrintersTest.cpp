// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Printers.h"
#include "notation/PrintRun.h"
#include "tests/servers/CupsServer.h"

#include <gmock/gmock.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>

namespace velmora::notation {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// One empty page, which the generic driver takes.
std::string emptyPdf() {
    std::string pdf = "%PDF-1.4\n";
    std::vector<std::size_t> places;
    for (const char* const object : {"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                     "<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]>>"}) {
        places.push_back(pdf.size());
        pdf += std::to_string(places.size()) + " 0 obj" + object + "endobj\n";
    }
    const std::size_t table = pdf.size();
    pdf += "xref\n0 4\n0000000000 65535 f \n";
    for (const std::size_t place : places) {
        const std::string digits = std::to_string(place);
        pdf += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    }
    return pdf + "trailer<</Size 4/Root 1 0 R>>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
}

PrintJob jobFor(std::string printer) {
    return {.printer = std::move(printer),
            .title = "The Song",
            .document = emptyPdf(),
            .options = jobOptions(PrintLayout(), 0)};
}

struct Listed {
    std::vector<Printer> printers;
    std::string problem;
};
Listed listOf(const std::string& address) {
    Listed listed;
    withServer(address, [&listed] { listed.printers = systemPrinters(listed.problem); });
    return listed;
}
std::string printAt(const std::string& address, const PrintJob& job, const std::stop_token& cancel = {}) {
    std::string problem;
    withServer(address, [&] { problem = print(job, cancel); });
    return problem;
}

template<class Work>
double secondsOf(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

class PrintersTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(server_.start());
        ASSERT_TRUE(server_.addPrinter("Office"));
        ASSERT_TRUE(server_.addPrinter("Attic"));
        ASSERT_TRUE(server_.administer({"-d", "Office"}));
    }
    CupsServer server_;
};

TEST_F(PrintersTest, EveryPrinterIsListedAndTheDefaultIsKnown) {
    const Listed listed = listOf(server_.address());
    EXPECT_EQ(listed.problem, "");
    std::vector<std::string> names;
    for (const Printer& printer : listed.printers) {
        names.push_back(printer.DeviceName);
        EXPECT_EQ(printer.isDefault, printer.DeviceName == "Office");
        EXPECT_FALSE(printer.options.empty());
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("Office", "Attic"));
}

TEST_F(PrintersTest, AJobReachesItsPrinterWithItsOptions) {
    EXPECT_EQ(printAt(server_.address(), jobFor("Office")), "");
    const auto kept = server_.kept();
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->title, "The Song");
    EXPECT_THAT(kept->document, HasSubstr("%PDF-"));
    EXPECT_THAT(kept->options, HasSubstr("media=iso_a4_210x297mm"));
    EXPECT_THAT(kept->options, HasSubstr("print-scaling=none"));
}

TEST_F(PrintersTest, AServerWithoutPrintersHasNoProblem) {
    ASSERT_TRUE(server_.administer({"-x", "Office"}));
    ASSERT_TRUE(server_.administer({"-x", "Attic"}));
    const Listed listed = listOf(server_.address());
    EXPECT_TRUE(listed.printers.empty());
    EXPECT_EQ(listed.problem, "");
}

TEST_F(PrintersTest, APrinterThatIsGoneIsNamed) {
    ASSERT_TRUE(server_.administer({"-x", "Office"}));
    EXPECT_THAT(printAt(server_.address(), jobFor("Office")),
                AllOf(StartsWith("The printer \"Office\" did not take the pages: "), Not(EndsWith(".."))));
    EXPECT_TRUE(server_.hasKeptNothing());
}

TEST_F(PrintersTest, AServerThatIsGoneIsTold) {
    server_.stop();
    EXPECT_THAT(printAt(server_.address(), jobFor("Office")), HasSubstr("does not answer"));
    EXPECT_THAT(listOf(server_.address()).problem, HasSubstr("does not answer"));
}

TEST_F(PrintersTest, ACancelledJobPrintsNothing) {
    std::stop_source cancel;
    cancel.request_stop();
    EXPECT_NE(printAt(server_.address(), jobFor("Office"), cancel.get_token()), "");
    EXPECT_EQ(printAt(server_.address(), jobFor("Attic")), "") << "the server goes on";
}

TEST(PrintersWithoutServerTest, NoServerIsToldAtOnce) {
    Listed listed;
    EXPECT_LT(secondsOf([&] { listed = listOf("/nonexistent/cups"); }), 2);
    EXPECT_TRUE(listed.printers.empty());
    EXPECT_THAT(listed.problem, HasSubstr("/nonexistent/cups"));
}

TEST(PrintersWithoutServerTest, ASilentServerIsGivenUp) {
    QTemporaryDir folder("/tmp/velmora-silent-XXXXXX");
    const std::string address = folder.filePath("s").toStdString();
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    address.copy(name.sun_path, sizeof name.sun_path - 1);
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
    ASSERT_EQ(listen(listening, 8), 0);
    constexpr double kLongest = 15;
    EXPECT_LT(secondsOf([&] { EXPECT_THAT(listOf(address).problem, HasSubstr("does not answer")); }),
              kLongest);
    EXPECT_LT(secondsOf([&] { EXPECT_NE(printAt(address, jobFor("Office")), ""); }), kLongest);
    close(listening);
}

} // namespace
} // namespace velmora::notation
