#include "scenarios/scenario.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "tavio/links/tcp_link.h"

namespace tavio::scenarios {

Call open(std::string address) {
    return {CallKind::kOpen, {}, std::move(address), {}};
}
Call write(Bytes bytes) {
    return {CallKind::kWrite, std::move(bytes), {}, {}};
}
Call drain() {
    return {CallKind::kDrain, {}, {}, {}};
}
Call read() {
    return {CallKind::kRead, {}, {}, {}};
}
Call close() {
    return {CallKind::kClose, {}, {}, {}};
}
Call after(Duration pause, Call call) {
    call.pause = pause;
    return call;
}

const char* nameOf(CallKind kind) {
    switch (kind) {
        case CallKind::kOpen:
            return "open";
        case CallKind::kWrite:
            return "write";
        case CallKind::kDrain:
            return "drain";
        case CallKind::kRead:
            return "read";
        case CallKind::kClose:
            return "close";
    }
    return "?";
}

namespace {

void schedule(const PlannedEvent& event, VirtualNetwork& network, links::Link& link) {
    network.at(event.time, [&network, &link, event] {
        switch (event.kind) {
            case PlannedEvent::Kind::kLose:
                network.lose();
                break;
            case PlannedEvent::Kind::kRestore:
                network.restore();
                break;
            case PlannedEvent::Kind::kLoadPaper:
                network.events().trace("new paper");
                network.server().device().loadPaper(network.now());
                break;
            case PlannedEvent::Kind::kCancel:
                network.events().trace("cancel");
                link.cancel();
                break;
            case PlannedEvent::Kind::kOccupy:
                network.server().occupy(event.bytes, event.until - event.time);
                break;
        }
    });
}

// The application does something else for a while; the world goes on.
void pause(VirtualNetwork& network, Duration time) {
    const auto count = std::chrono::ceil<milliseconds>(time).count();
    if (count > 0) network.poll(nullptr, 0, static_cast<int>(count));
}

bool carryOut(const Call& call, links::Link& link, CallRecord& record) {
    switch (call.kind) {
        case CallKind::kOpen:
            return link.open(call.address);
        case CallKind::kWrite:
            return link.write(call.bytes);
        case CallKind::kDrain:
            return link.drain();
        case CallKind::kRead:
            record.text = link.read();
            return true;
        case CallKind::kClose:
            link.close();
            return true;
    }
    return false;
}

void noteCall(const CallRecord& record, VirtualNetwork& network) {
    std::string line = nameOf(record.kind);
    line.append(record.succeeded ? " returns" : " fails");
    if (record.text) line.append(" with text");
    network.events().trace(line);
}

}  // namespace

void carryOut(const Plan& plan, Trial& trial) {
    VirtualNetwork& network = trial.network;
    links::TcpLink link(plan.deadlines, network);
    for (const PlannedEvent& event : plan.events) schedule(event, network, link);
    for (const Call& call : plan.calls) {
        pause(network, call.pause);
        if (call.kind == CallKind::kOpen || trial.jobs.empty()) trial.jobs.emplace_back();
        JobRecord& job = trial.jobs.back();
        CallRecord record{call.kind, network.now(), {}, true, {}, {}, {}};
        network.events().trace(std::string(nameOf(call.kind)).append(" begins"));
        const std::size_t connections = network.connectionCount();
        record.succeeded = carryOut(call, link, record);
        record.end = network.now();
        record.failure = link.failure();
        noteCall(record, network);
        job.offered += call.bytes.size();
        job.report = link.report();
        job.wasClosed = call.kind == CallKind::kClose;
        if (network.connectionCount() > connections) {
            job.connection = network.connectionCount() - 1;
        }
        if (job.connection) record.truth = network.connection(*job.connection).truth();
        job.calls.push_back(record);
    }
    network.settle();
}

namespace {

void describe(const JobRecord& job, Time start, std::ostream& out) {
    out << "job of " << job.offered << " bytes: " << links::describe(job.report) << "\n"
        << "  offered " << job.report.offered << ", accepted " << job.report.accepted
        << ", acknowledged "
        << (job.report.acknowledged ? std::to_string(*job.report.acknowledged) : "unknown")
        << ", answered " << job.report.answered << "\n  reply "
        << (job.report.reply ? "\"" + *job.report.reply + "\"" : "none") << "\n  failure \""
        << job.report.failure << "\"\n  remark \"" << job.report.remark << "\"\n";
    for (const CallRecord& call : job.calls) {
        out << "  " << nameOf(call.kind) << (call.succeeded ? "" : " failed") << ": "
            << inMilliseconds(call.begin - start) << " to " << inMilliseconds(call.end - start)
            << "\n";
    }
}

void describe(const Truth& truth, std::ostream& out) {
    out << "in truth: accepted " << truth.accepted << ", acknowledged " << truth.acknowledged
        << " (" << truth.acknowledgedAtClose << " at the close), arrived " << truth.arrived
        << ", read there " << truth.readThere << ", replied " << truth.replied
        << (truth.resetArrived ? ", reset by the printer" : "")
        << (truth.resetThere ? ", reset by the link" : "") << "\n";
}

void describe(const NetworkPlan& plan, std::ostream& out) {
    const auto& device = plan.device;
    const auto orNone = [](const std::optional<std::uint64_t>& value) {
        return value ? std::to_string(*value) : "-";
    };
    out << "path: latency " << inMilliseconds(plan.path.latency) << ", " << plan.path.bytesPerSecond
        << " bytes/s, send buffer " << plan.path.sendBuffer << ", window " << plan.path.window
        << ", answer " << static_cast<int>(plan.path.answer) << "\n"
        << "device: buffer " << device.physics.receiveBuffer
        << (device.physics.dropWhenFull ? " drops" : " blocks") << ", "
        << device.physics.bytesPerSecond << " bytes/s, " << device.physics.millimetresPerSecond
        << " mm/s, reset after " << orNone(device.faults.resetAfter) << ", close after "
        << orNone(device.faults.closeAfter) << ", paper out after "
        << orNone(device.faults.paperOutAfter) << (device.faults.neverRead ? ", never reads" : "")
        << ", reply \"" << device.reply.text << "\" after " << device.reply.delay.count() << " ms\n"
        << "server: " << (plan.server.keepsOpen ? "keeps open, " : "") << "ends sending after "
        << orNone(plan.server.endsSendingAfter) << ", chatter every "
        << inMilliseconds(plan.server.chatter) << "\n";
}

}  // namespace

std::string describe(const Plan& plan, const Trial& trial) {
    std::ostringstream out;
    const Time start = trial.network.events().now() - trial.network.events().elapsed();
    describe(plan.network, out);
    out << "deadlines: connect " << plan.deadlines.connect.count() << ", progress "
        << plan.deadlines.progress.count() << ", reply " << plan.deadlines.reply.count()
        << ", silence " << plan.deadlines.silence.count() << ", goodbye "
        << plan.deadlines.goodbye.count() << " ms\n";
    for (const JobRecord& job : trial.jobs) {
        describe(job, start, out);
        if (job.connection) describe(trial.network.connection(*job.connection).truth(), out);
    }
    out << trial.network.server().tickets().size() << " tickets came out\n";
    if (!trial.network.misuse().empty()) out << "misuse: " << trial.network.misuse() << "\n";
    for (const std::string& line : trial.network.events().lines()) out << "  " << line << "\n";
    return out.str();
}

}  // namespace tavio::scenarios
