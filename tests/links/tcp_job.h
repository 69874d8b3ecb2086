// A job on its way.
#pragma once

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "links/virtual_tcp.h"
#include "tavio/links/tcp_link.h"

namespace tavio::links::test {

// A job of ten bytes that the system has taken and the printer has not.
class TcpJob : public testing::Test {
  protected:
    TcpJob() {
        calls_.takes = false;
        EXPECT_TRUE(link_.open("192.0.2.7")) << link_.failure();
        EXPECT_TRUE(link_.write(bytesOf("0123456789")));
    }
    ~TcpJob() override {
        link_.close();
        EXPECT_EQ(calls_.openDescriptors(), 0U);
    }

    void acknowledgeAll() { calls_.acknowledge(10); }

    VirtualTcp calls_;
    TcpLink link_{Deadlines{}, calls_};
};

}  // namespace tavio::links::test
