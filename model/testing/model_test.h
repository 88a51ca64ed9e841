// The fixtures of the model's tests: one model, started, alone or with a phone that owns the link.
#pragma once

#include "model/testing/model_bench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace lumbrine {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

class ModelTest : public ::testing::Test {
protected:
    ModelWorld world;
    ModelBench bench{world};
};

// The phone at 192.168.1.7 is the owner and present since the tick at origin - 0.2 s; the next ticks are 0.2 s and 0.6
// s after the origin, and the one at 0.6 s is a third one, with a full resend.
class OwnedModelTest : public ModelTest {
protected:
    OwnedModelTest() {
        bench.start();
        phone = bench.phone("192.168.1.7");
        sendNothing();
        bench.run(300ms);
        markAll();
    }

    void markAll() {
        bench.mark();
        phone->tape.clear();
        bench.lines.clear();
    }

    // A sign of life: a V-Pot turned by no click.
    void sendNothing() { phone->send({0x01, 0x07, 0x00, 0x00}); }

    // Everything that is ready, without letting time pass.
    void settle() { world.runtime.runUntilIdle(); }

    Lines heard(std::uint8_t type) {
        settle();
        return bench.heardBy(*phone, type);
    }

    std::unique_ptr<Phone> phone;
};

} // namespace lumbrine
