#pragma once

// Marks what libkivo.so gives to the plug-in and the host; all else in a library stays hidden.
#define KIVO_API __attribute__((visibility("default")))
