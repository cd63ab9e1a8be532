// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Printers.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <cups/cups.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <span>
#include <string_view>

namespace velmora::notation {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kConnectMilliseconds = 2000;
constexpr double kAnswerSeconds = 2; ///< for one silence of the server
/// After that no further printer is asked what it offers.
constexpr std::chrono::seconds kLookTime{4};

struct CupsLibrary : LateLibrary {
    CupsLibrary() : LateLibrary(kCupsLibrary) {}
    VELMORA_LATE_CALL(cupsAddOption);
    VELMORA_LATE_CALL(cupsCancelJob2);
    VELMORA_LATE_CALL(cupsCopyDestInfo);
    VELMORA_LATE_CALL(cupsDoRequest);
    VELMORA_LATE_CALL(cupsEncodeOptions2);
    VELMORA_LATE_CALL(cupsEncryption);
    VELMORA_LATE_CALL(cupsFindDestSupported);
    VELMORA_LATE_CALL(cupsFinishDocument);
    VELMORA_LATE_CALL(cupsFreeDestInfo);
    VELMORA_LATE_CALL(cupsFreeDests);
    VELMORA_LATE_CALL(cupsFreeOptions);
    VELMORA_LATE_CALL(cupsGetDests2);
    VELMORA_LATE_CALL(cupsLastError);
    VELMORA_LATE_CALL(cupsLastErrorString);
    VELMORA_LATE_CALL(cupsServer);
    VELMORA_LATE_CALL(cupsStartDocument);
    VELMORA_LATE_CALL(cupsUser);
    VELMORA_LATE_CALL(cupsWriteRequestData);
    VELMORA_LATE_CALL(httpAssembleURIf);
    VELMORA_LATE_CALL(httpClose);
    VELMORA_LATE_CALL(httpConnect2);
    VELMORA_LATE_CALL(httpSetTimeout);
    VELMORA_LATE_CALL(ippAddString);
    VELMORA_LATE_CALL(ippDelete);
    VELMORA_LATE_CALL(ippFindAttribute);
    VELMORA_LATE_CALL(ippGetCount);
    VELMORA_LATE_CALL(ippGetInteger);
    VELMORA_LATE_CALL(ippGetResolution);
    VELMORA_LATE_CALL(ippNewRequest);
    VELMORA_LATE_CALL(ippPort);
};

const CupsLibrary& cups() {
    static const CupsLibrary only;
    return only;
}

/// One talk with the server, which is given up where it falls silent.
class Connection {
public:
    Connection()
        : http_(cups().httpConnect2(cups().cupsServer(), cups().ippPort(), nullptr, AF_UNSPEC,
                                    cups().cupsEncryption(), 1, kConnectMilliseconds, nullptr)) {
        if (http_)
            cups().httpSetTimeout(
                http_, kAnswerSeconds, [](http_t*, void*) { return 0; }, nullptr);
    }
    ~Connection() {
        if (http_)
            cups().httpClose(http_);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] http_t* http() const { return http_; }

private:
    http_t* http_;
};

/// Without a point at its end, which the library's words have or don't have.
std::string lastReason() {
    const char* const words = cups().cupsLastErrorString();
    std::string reason = words && *words ? words : "it does not answer";
    while (reason.ends_with('.'))
        reason.pop_back();
    return reason;
}

std::string missingLibrary() {
    return "Printers can't be reached: " + cups().problem() + '.';
}

std::string silentServer() {
    return "The print server \"" + std::string(cups().cupsServer()) + "\" does not answer.";
}

/// Dots an inch, across the page.
std::vector<int> resolutionsOf(http_t* http, cups_dest_t& dest) {
    const std::unique_ptr<cups_dinfo_t, decltype(cups().cupsFreeDestInfo)> info(
        cups().cupsCopyDestInfo(http, &dest), cups().cupsFreeDestInfo);
    std::vector<int> found;
    if (!info)
        return found;
    constexpr double kCentimetresAnInch = 2.54;
    ipp_attribute_t* const offered =
        cups().cupsFindDestSupported(http, &dest, info.get(), "printer-resolution");
    for (int i = 0; offered && i < cups().ippGetCount(offered); ++i) {
        int down = 0;
        ipp_res_t unit = IPP_RES_PER_INCH;
        const int across = cups().ippGetResolution(offered, i, &down, &unit);
        found.push_back(unit == IPP_RES_PER_CM ? static_cast<int>(across * kCentimetresAnInch) : across);
    }
    std::erase_if(found, [](int dots) { return dots <= 0; });
    std::ranges::sort(found);
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

Printer printerOf(http_t* http, cups_dest_t& dest, bool isInTime) {
    Printer printer;
    printer.DeviceName = dest.name;
    if (dest.instance)
        printer.DeviceName.append(1, '/').append(dest.instance);
    printer.isDefault = dest.is_default != 0;
    for (const cups_option_t& option : std::span(dest.options, static_cast<std::size_t>(dest.num_options)))
        printer.options[option.name] = option.value;
    if (isInTime)
        printer.resolutions = resolutionsOf(http, dest);
    return printer;
}

/// The options as the library wants them.
class Options {
public:
    explicit Options(const std::map<std::string, std::string>& options) {
        for (const auto& [name, value] : options)
            count_ = cups().cupsAddOption(name.c_str(), value.c_str(), count_, &list_);
    }
    ~Options() { cups().cupsFreeOptions(count_, list_); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    [[nodiscard]] int count() const { return count_; }
    [[nodiscard]] cups_option_t* list() const { return list_; }

private:
    int count_ = 0;
    cups_option_t* list_ = nullptr;
};

/// The library's own call for this asks once more by a connection that waits for a minute.
/// @return the job's number, or 0
int createJob(http_t* http, const PrintJob& job, const std::string& queue) {
    std::array<char, HTTP_MAX_URI> address{};
    cups().httpAssembleURIf(HTTP_URI_CODING_ALL, address.data(), static_cast<int>(address.size()), "ipp",
                            nullptr, "localhost", 0, "/printers/%s", queue.c_str());
    ipp_t* const request = cups().ippNewRequest(IPP_OP_CREATE_JOB);
    const auto add = [request](ipp_tag_t tag, const char* name, const char* value) {
        cups().ippAddString(request, IPP_TAG_OPERATION, tag, name, nullptr, value);
    };
    add(IPP_TAG_URI, "printer-uri", address.data());
    add(IPP_TAG_NAME, "requesting-user-name", cups().cupsUser());
    add(IPP_TAG_NAME, "job-name", job.title.c_str());
    const Options options(job.options);
    cups().cupsEncodeOptions2(request, options.count(), options.list(), IPP_TAG_JOB);
    ipp_t* const answer = cups().cupsDoRequest(http, request, ("/printers/" + queue).c_str());
    ipp_attribute_t* const id = answer ? cups().ippFindAttribute(answer, "job-id", IPP_TAG_INTEGER) : nullptr;
    const int number = id ? cups().ippGetInteger(id, 0) : 0;
    cups().ippDelete(answer);
    return number;
}

bool sendDocument(http_t* http, const PrintJob& job, const std::string& queue, int id,
                  const std::stop_token& cancel) {
    constexpr std::size_t kBlock = 65536;
    if (cups().cupsStartDocument(http, queue.c_str(), id, job.title.c_str(), CUPS_FORMAT_PDF, 1) !=
        HTTP_STATUS_CONTINUE)
        return false;
    for (std::size_t at = 0; at < job.document.size(); at += kBlock) {
        const std::size_t size = std::min(kBlock, job.document.size() - at);
        if (cancel.stop_requested() ||
            cups().cupsWriteRequestData(http, job.document.data() + at, size) != HTTP_STATUS_CONTINUE)
            return false;
    }
    return cups().cupsFinishDocument(http, queue.c_str()) <= IPP_STATUS_OK_EVENTS_COMPLETE;
}

} // namespace

std::vector<Printer> systemPrinters(std::string& problem) {
    problem.clear();
    if (!cups().complete()) {
        problem = missingLibrary();
        return {};
    }
    const Connection connection;
    if (!connection.http()) {
        problem = silentServer();
        return {};
    }
    const auto deadline = Clock::now() + kLookTime;
    cups_dest_t* dests = nullptr;
    const int count = cups().cupsGetDests2(connection.http(), &dests);
    std::vector<Printer> printers;
    for (cups_dest_t& dest : std::span(dests, static_cast<std::size_t>(std::max(count, 0))))
        printers.push_back(printerOf(connection.http(), dest, Clock::now() < deadline));
    const ipp_status_t status = cups().cupsLastError();
    if (count <= 0 && status > IPP_STATUS_OK_EVENTS_COMPLETE && status != IPP_STATUS_ERROR_NOT_FOUND)
        problem = silentServer();
    cups().cupsFreeDests(count, dests);
    return printers;
}

std::string print(const PrintJob& job, const std::stop_token& cancel) {
    if (!cups().complete())
        return missingLibrary();
    const Connection connection;
    if (!connection.http())
        return silentServer();
    const auto failure = [&job] {
        return "The printer \"" + job.printer + "\" did not take the pages: " + lastReason() + '.';
    };
    const std::string queue = job.printer.substr(0, job.printer.find('/')); // without the instance
    const int id = createJob(connection.http(), job, queue);
    if (id <= 0)
        return failure();
    if (sendDocument(connection.http(), job, queue, id, cancel))
        return {};
    std::string reason = failure();
    const Connection another; // what was broken off can't be talked to any more
    if (another.http())
        cups().cupsCancelJob2(another.http(), queue.c_str(), id, 0);
    return reason;
}

} // namespace velmora::notation
