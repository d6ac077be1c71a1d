// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_StreamStacks.h>

#include <algorithm>
#include <iostream>
#include <utility>

namespace {

using Stack = std::vector<std::ostream *>;

size_t push(Stack &stack, std::ostream *stream) {
    stack.push_back(stream ? stream : stack.back());
    return stack.size() - 1;
}

void popTo(Stack &stack, size_t index) {
    stack.resize(std::max<size_t>(1, std::min(index, stack.size())));
}

}   // namespace

CMD_StreamStacks::CMD_StreamStacks() : outs{ &std::cout }, errs{ &std::cerr } {}

CMD_StreamStacks::Slots CMD_StreamStacks::push(std::ostream *out, std::ostream *err) {
    return { ::push(outs, out), ::push(errs, err) };
}

void CMD_StreamStacks::pop() {
    popTo({ outs.size() - 1, errs.size() - 1 });
}

void CMD_StreamStacks::popTo(Slots slots) {
    ::popTo(outs, slots.out);
    ::popTo(errs, slots.err);
}

std::ostream &CMD_StreamStacks::replaceOut(std::ostream &stream) {
    return *std::exchange(outs.back(), &stream);
}

std::ostream &CMD_StreamStacks::replaceErr(std::ostream &stream) {
    return *std::exchange(errs.back(), &stream);
}

void CMD_StreamStacks::forget(std::ostream &stream) {
    std::ostream *const ended = &stream;
    std::ostream *const out = &std::cout;
    std::ostream *const err = &std::cerr;
    std::replace(outs.begin(), outs.end(), ended, out);
    std::replace(errs.begin(), errs.end(), ended, err);
}
