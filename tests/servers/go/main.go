// The WebDAV server of golang.org/x/net over a folder.
package main

import (
	"log"
	"net/http"
	"os"

	"golang.org/x/net/webdav"
)

func main() {
	server := &webdav.Handler{FileSystem: webdav.Dir(os.Getenv("NORLIS_DOCUMENTS")), LockSystem: webdav.NewMemLS()}
	forOneUser := func(answer http.ResponseWriter, request *http.Request) {
		user, password, _ := request.BasicAuth()
		if user != os.Getenv("NORLIS_USER") || password != os.Getenv("NORLIS_PASSWORD") {
			answer.Header().Set("WWW-Authenticate", `Basic realm="Norlis"`)
			http.Error(answer, "Wrong user name or password.", http.StatusUnauthorized)
			return
		}
		server.ServeHTTP(answer, request)
	}
	log.Fatal(http.ListenAndServe("127.0.0.1:"+os.Getenv("NORLIS_PORT"), http.HandlerFunc(forOneUser)))
}
