#include "tavio/job.h"

#include <memory>
#include <optional>
#include <string>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "links/transport_operations.h"
#include "tavio/failure.h"

namespace tavio::tool {

namespace {

// Keeps the first notice of a job: the library shows one exactly when it refuses a picture.
class NoticeRecorder {
  public:
    NoticeRecorder() {
        platform::setNoticeHandler([this](const platform::Notice& notice) {
            if (!first_) first_ = notice;
        });
    }
    NoticeRecorder(const NoticeRecorder&) = delete;
    NoticeRecorder& operator=(const NoticeRecorder&) = delete;
    ~NoticeRecorder() { platform::setNoticeHandler({}); }

    void refuseIfShown() const {
        if (first_) throw Failure("nothing was printed: " + first_->title + ": " + first_->message);
    }

  private:
    std::optional<platform::Notice> first_;
};

// The link that the transport operations use, for the time of a job.
class UsedLink {
  public:
    UsedLink(const Destination& destination, bool trace, Console& console)
        : link_(destination.link) {
        links::useLink(link_);
        if (trace) {
            links::observeOperations([&console](const links::Operation& operation) {
                console.trace(describe(operation));
            });
        }
    }
    UsedLink(const UsedLink&) = delete;
    UsedLink& operator=(const UsedLink&) = delete;
    ~UsedLink() {
        links::observeOperations({});
        links::useLink(nullptr);
    }

    void refuseIfFailed() const {
        if (std::string why = link_->failure(); !why.empty()) throw Failure(why);
    }

  private:
    static std::string describe(const links::Operation& operation) {
        std::string text = operation.name;
        if (operation.size) return text + " " + std::to_string(*operation.size) + " bytes";
        return operation.carriesData ? text + " no text" : text;
    }

    std::shared_ptr<links::Link> link_;
};

// An open session; closed at the latest when it goes out of scope.
class Session {
  public:
    Session(const Options& options, const UsedLink& link) {
        if (OpenSessionWiFi(options.target.name)) return;
        CloseSessionWiFi();
        link.refuseIfFailed();
        throw Failure(options.target.name + " cannot be opened");
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { close(); }

    void close() {
        if (open_) CloseSessionWiFi();
        open_ = false;
    }

  private:
    bool open_ = true;
};

void sendFinish(Finish finish) {
    if (finish == Finish::kCut) PrintCut();
    if (finish == Finish::kEject) PrintNoCut();
}

}  // namespace

void configure(const Settings& settings) {
    ChangeConfiguration(settings.path, settings.resolution, settings.scaled, !settings.threshold,
                        settings.stock, settings.portrait ? "<PM>" : "<LM>");
}

void runJob(const Options& options, const Destination& destination, Console& console,
            const std::function<void()>& send) {
    NoticeRecorder notices;
    UsedLink link(destination, options.trace, console);
    Session session(options, link);
    configure(options.settings);  // again, now that the dot widths are there
    console.stage("printing");
    send();
    notices.refuseIfShown();
    link.refuseIfFailed();
    sendFinish(options.finish);
    session.close();
    link.refuseIfFailed();
    if (!destination.commit()) throw Failure(destination.link->failure());
    destination.report(console);
}

void runJob(const Options& options, Console& console, const std::function<void()>& send) {
    runJob(options, destinationOf(options), console, send);
}

}  // namespace tavio::tool
