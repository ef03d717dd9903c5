"""A stand-in for the AI service: HTTPS, the shape of the Responses API, and every kind of misbehaviour on request."""

from .answer import Answer, error_body, reply_body
from .server import HOST, Upstream, UpstreamRequest

__all__ = ["Answer", "HOST", "Upstream", "UpstreamRequest", "error_body", "reply_body"]
