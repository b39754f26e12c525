#pragma once

/// Regular controls are 24 logical pixels high, small ones 20.
enum class ControlSize { regular, small };
