// Tickets, composed from commands.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"
#include "tools/tavio/options.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// Where an element comes from.
struct Origin {
    std::size_t line = 0;      // of the script, from 1; 0 without a script
    std::string document;      // its name, if the command has several: "a.pdf, page 3"
    bool pagesChosen = false;  // by --page or --pages
    bool isCopy = false;       // the second or a later one
};

// Collects the tickets of one job. A new ticket begins after a cut or an eject, for each document,
// page and copy, and where settings of the ticket change.
//
//   Composer composer(replacedFile(target));
//   composer.add(options);
//   auto job = printing::encode(composer.tickets());
class Composer {
  public:
    // replaced: the job's output file, "" if it replaces no file; must not be a document.
    explicit Composer(std::string replaced = "") : replaced_(std::move(replaced)) {}

    // Standard input is read by something else: no document can come from there.
    void withoutStandardInput(const std::string& why) { whyNoStandardInput_ = why; }

    // Adds the elements of one command that makes up a job. Throws Failure if its file cannot be
    // one; the file itself is read and checked by encode(), unless it is a stream.
    void add(const Options& options, std::size_t line = 0);

    // Adds a ticket that something else has composed.
    void add(printing::Ticket ticket, printing::Finish finish);

    const std::vector<printing::Ticket>& tickets() const { return tickets_; }

    // What a person should know of how it was composed.
    const std::vector<Notice>& notes() const { return notes_; }

    // The origin of what a problem or a warning is about.
    Origin originOf(std::size_t ticket, std::size_t element) const;

  private:
    struct Part;

    void addElement(const Options& options, std::size_t line);
    void addDrawn(const Options& options);
    void addText(const Options& options, std::size_t line);
    void addWords(const Options& options);
    std::string textOf(const Options& options);
    void addDocuments(const Options& options, Origin origin);
    void addPart(const Part& part, const Options& options);
    static std::string nameOf(const Part& part);
    std::vector<Part> partsOf(const std::string& path, const Options& options);
    void addLogo(const Options& options);
    void addRaw(const Options& options);
    printing::Source sourceOf(const std::string& path, const char* what);
    printing::Source streamOf(const std::string& path);
    std::shared_ptr<const Bytes> contentOf(const std::string& path, const char* what);

    printing::Ticket& ticketFor(const Settings& settings);
    void finish(const Settings& settings, printing::Finish finish);

    // Notes the origin of elements that have been added since the last call.
    void note(const Origin& origin);

    std::string replaced_;
    std::string whyNoStandardInput_;
    std::vector<printing::Ticket> tickets_;
    std::vector<std::vector<Origin>> origins_;  // of each ticket's elements
    std::vector<Notice> notes_;
    bool isFinished_ = true;  // the last ticket takes no more elements
};

}  // namespace tavio::tool
