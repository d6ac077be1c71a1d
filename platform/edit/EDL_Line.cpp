// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/edit/EDL_Line.h>

#include <orvlang/platform/kit/KIT_Component.h>

std::unique_ptr<EDL_Line> EDLmakeLine() {
    std::string failure;   // not reported: lines are read without editing then
    static EDL_MakeFunction *const make = reinterpret_cast<EDL_MakeFunction *>(
        KIT_Component::load("liborvlang_edit.so", KIT_NAME_OF(EDL_MAKE_FUNCTION), nullptr, failure));
    return std::unique_ptr<EDL_Line>(make ? make() : nullptr);
}
