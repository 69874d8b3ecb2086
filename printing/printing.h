// Printing tickets as values: compose, encode, preview, print. Every result is told, and any number
// of printers can work at once.
//
//   #include <tavio/printing.h>
//   using namespace tavio::printing;
//
//   Ticket ticket;
//   ticket.picture(Source::file("photo.jpg"), {.row = 10, .column = 20}).finish(Finish::kCut);
//   auto job = encode(ticket);
//   if (!job) return tell(job.error().front().sentence);
//   Printer printer("tcp://192.168.1.50");
//   return tell(printer.print(*job).describe());
#pragma once

#include "tavio/printing/calibration.h"
#include "tavio/printing/calibration_page.h"
#include "tavio/printing/document_info.h"
#include "tavio/printing/job.h"
#include "tavio/printing/preview.h"
#include "tavio/printing/print_options.h"
#include "tavio/printing/print_result.h"
#include "tavio/printing/printer.h"
#include "tavio/printing/printer_address.h"
#include "tavio/printing/reply.h"
#include "tavio/printing/result.h"
#include "tavio/printing/series.h"
#include "tavio/printing/source.h"
#include "tavio/printing/ticket.h"
