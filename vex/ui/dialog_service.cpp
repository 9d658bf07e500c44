#include "vex/ui/dialog_service.h"

#include <atomic>

namespace vex {

namespace {
std::atomic<IDialogService*> g_service{nullptr};
}  // namespace

IDialogService* SetDialogService(IDialogService* service) { return g_service.exchange(service); }

IDialogService* DialogService() { return g_service.load(); }

}  // namespace vex
