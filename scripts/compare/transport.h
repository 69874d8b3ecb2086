// The twelve transport operations, defined here: each call goes to the record with its bytes.
#pragma once

#include <TavioIpadSDK/TavioIpadSDK.h>

namespace compare {

// What the operations answer.
struct Transport {
    bool opens = true;    // Open_BT, Open_WF
    tavio::Text reply{};  // Read_BT, Read_WF
};

Transport& transport();

}  // namespace compare
