"""A client of the Hub's local AI broker; docs/broker-protocol.md describes what it speaks."""

from .client import BrokerClient
from .draft import new_draft
from .errors import (BrokerFailure, BrokerRefusal, HubNotRunning, NoReply, UnusableReply, UntrustedBroker, WaitedInVain)

__all__ = ["BrokerClient", "BrokerFailure", "BrokerRefusal", "HubNotRunning", "NoReply", "UntrustedBroker", "UnusableReply",
           "WaitedInVain", "new_draft"]
