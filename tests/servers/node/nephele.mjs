// nephele with its adapter for folders.

import FileSystemAdapter from '@nephele/adapter-file-system';
import express from 'express';
import nephele, { UnauthorizedError } from 'nephele';

const { NORLIS_USER, NORLIS_PASSWORD, NORLIS_DOCUMENTS, NORLIS_PORT } = process.env;
const expected = 'Basic ' + Buffer.from(`${NORLIS_USER}:${NORLIS_PASSWORD}`).toString('base64');

const oneUser = {
    async authenticate(request, response) {
        if (request.get('Authorization') !== expected) {
            response.set('WWW-Authenticate', 'Basic realm="Norlis", charset="UTF-8"');
            throw new UnauthorizedError('Wrong user name or password.');
        }
        return { username: NORLIS_USER };
    },
    async cleanAuthentication() {},
};

const program = express();
program.use('/', nephele({ adapter: new FileSystemAdapter({ root: NORLIS_DOCUMENTS }), authenticator: oneUser }));
program.listen(NORLIS_PORT, '127.0.0.1');
