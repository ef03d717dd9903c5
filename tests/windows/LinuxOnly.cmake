# Test sources that are not part of the Windows build, each with the reason. What Windows answers instead has tests of its own, in files
# whose names begin with "Windows"; those are not part of the Linux build.
set(hub_linux_only_tests
  unit/platform/KnownFoldersTest.cpp          # HOME
  unit/platform/MemoryPrivacyTest.cpp         # prctl; Windows lets no other user look anyway
  unit/platform/PipeServerTest.cpp            # a FIFO keeps what was written; a pipe of Windows does not
  unit/platform/PeVersionReaderTest.cpp       # the Linux reader; Windows reads version resources itself
  unit/platform/ProcessEndTest.cpp            # fork
  unit/platform/ProcessIdTest.cpp             # a shell's parent
  unit/platform/ProcessSetupTest.cpp          # the file-creation mask
  unit/platform/ProgramsTest.cpp              # xdg-open, execute permissions, sessions, /proc
  unit/platform/QueuedWindowEventsTest.cpp    # the queue of X11's library
  unit/platform/SecondInstanceTest.cpp        # the abstract socket, fork
  unit/platform/SecureRandomFailureTest.cpp   # a protected page
  unit/support/RegularFileKindsTest.cpp       # links to files, devices, FIFOs
  unit/support/BoundedJsonPipeTest.cpp        # a FIFO in a file's place
  unit/app/HubSettingsPipeTest.cpp            # a FIFO in a file's place
  unit/catalogue/ManifestServicePipeTest.cpp  # FIFOs in the files' places
  unit/vault/VaultPipesTest.cpp               # FIFOs in the files' places
  unit/vault/PromotionRefusedCallsTest.cpp    # single calls that the system refuses, by seccomp
  unit/install/InstallPipesTest.cpp           # FIFOs in the files' places
  unit/install/InstallPermissionsTest.cpp     # execute permissions
  unit/install/LaunchTest.cpp                 # a program that reads /proc, the file-creation mask
  unit/app/TestHomeTest.cpp                   # the mount namespace
  unit/creator/DraftPathTest.cpp              # paths of Linux's form and length, FIFOs, sockets
  unit/creator/PreviewDraftHostileFilesTest.cpp   # FIFOs and links to files among the hostile
  unit/ai/AbandonedPipesTest.cpp              # FIFOs
  unit/ai/BrokerPrivacyTest.cpp               # file permissions and FIFOs
  unit/ai/HubCredentialStoreTest.cpp          # the Secret Service
  unit/ai/SecretServiceNoThreadTest.cpp       # the Secret Service, seccomp
)
