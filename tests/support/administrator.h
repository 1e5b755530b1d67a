#pragma once

/// Whether the test may act as other users and give files away, which only root can. Where every test must
/// run (CI=true in the environment) a missing right fails the test that asks; elsewhere it may skip.
bool isAdministrator();
