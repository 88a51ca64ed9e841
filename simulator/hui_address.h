// The addresses of the switches and LEDs of a HUI: a zone and a port. Strip n is zone n.
#pragma once

namespace lumbrine::hui_address {

inline constexpr int zoneCount = 0x1E;
inline constexpr int portCount = 8;
inline constexpr int stripCountOfSurface = 8;
inline constexpr int ringCount = 12;   // of 8 strips and 4 parameter pots
inline constexpr int displayCount = 9; // of 8 strips, and SELECT-ASSIGN
inline constexpr int assignDisplay = 8;

enum StripPort { touch, select, mute, solo, automation, vSel, insert, recordArm };

inline constexpr int keyboardZone = 0x08;
enum KeyboardPort { clutch, shift, fine = 4, option };

inline constexpr int bankZone = 0x0A; // ports 0-3: channel left, bank left, channel right, bank right

inline constexpr int assignZone = 0x0B;
enum AssignPort { output, input, pan, sendE, sendD, sendC, sendB, sendA };

inline constexpr int transportZone = 0x0E;
enum TransportPort { rewind = 1, fastForward, stop, play, record };

inline constexpr int transport2Zone = 0x0F;
enum Transport2Port { returnToZero, toEnd, onLine, loop, quickPunch };

inline constexpr int counterZone = 0x16;
enum CounterPort { timeCode, feet, beats, rudeSolo };

inline constexpr int autoEnableZone = 0x17; // ports 0-5
inline constexpr int autoModeZone = 0x18;
enum AutoModePort { trim, latch, read, off, write, touchMode };

} // namespace lumbrine::hui_address
