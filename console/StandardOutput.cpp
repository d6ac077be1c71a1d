// SPDX-License-Identifier: Apache-2.0
#include "StandardOutput.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <streambuf>

#include <unistd.h>

#include <orvlang/platform/osl/OSL_File.h>
#include <orvlang/platform/snk/SNK_Python.h>

namespace {

/// Writes to a descriptor. Remembers the latest error instead of failing.
class DescriptorBuffer : public std::streambuf {
public:
    explicit DescriptorBuffer(int descriptor) : descriptor(descriptor) { setp(bytes, bytes + sizeof bytes); }

    int getError() const { return error; }   // an errno; 0 for none

protected:
    int_type overflow(int_type byte) override {
        sync();
        return traits_type::eq_int_type(byte, traits_type::eof()) ? traits_type::not_eof(byte)
                                                                  : sputc(traits_type::to_char_type(byte));
    }
    int sync() override {
        if (pptr() == pbase())   // each statement flushes, most have written nothing
            return 0;
        if (!OSLwriteAll(descriptor, pbase(), static_cast<std::size_t>(pptr() - pbase())))
            error = errno;
        setp(bytes, bytes + sizeof bytes);
        return 0;
    }

private:
    const int descriptor;
    int error = 0;
    char bytes[8192];
};

DescriptorBuffer *theOutput = nullptr;   // never freed: the streams are flushed at the very end of the process

void reportLoss() {
    std::cout.flush();
    const int error = theOutput->getError() ? theOutput->getError() : SNKgetPythonOutputError();
    if (error == 0)
        return;
    std::cerr << "orvlang: standard output: " << std::strerror(error) << std::endl;
    _exit(1);
}

}   // namespace

void StandardOutput::install() {
    theOutput = new DescriptorBuffer(STDOUT_FILENO);
    std::cout.rdbuf(theOutput);
    static auto *const errors = new DescriptorBuffer(STDERR_FILENO);
    std::cerr.rdbuf(errors);
    std::atexit(reportLoss);
}
