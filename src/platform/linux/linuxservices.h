#pragma once

#include <memory>

class CaptureChannel;
class ClipboardImage;
class FileManager;
class ForegroundWindow;
class Printers;
class SessionEnd;

/// Makers of the Linux services; each is defined beside its service.
std::unique_ptr<CaptureChannel> makeCaptureChannel();
std::unique_ptr<ClipboardImage> makeClipboardImage();
std::unique_ptr<FileManager> makeFileManager();
std::unique_ptr<ForegroundWindow> makeForegroundWindow();
std::unique_ptr<Printers> makePrinters();
std::unique_ptr<SessionEnd> makeSessionEnd();
