// Sending one job, or one series of tickets, over a link of its own.
#pragma once

#include "tavio/printing/job_bytes.h"
#include "tavio/printing/print_options.h"
#include "tavio/printing/print_result.h"
#include "tavio/printing/printer_address.h"
#include "tavio/printing/turn_queue.h"

namespace tavio::printing {

// Sends all pieces when the turn has come.
PrintResult sendInTurn(JobBytes& job, const PrintOptions& options, const ReplyTable& replies,
                       const LinkMaker& makeLink, TurnQueue::Turn& turn) noexcept;

// Asks for the printer's reply when the turn has come.
StatusResult askInTurn(const ReplyTable& replies, const LinkMaker& makeLink,
                       TurnQueue::Turn& turn) noexcept;

}  // namespace tavio::printing
